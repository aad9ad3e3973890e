// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::effects {

/// The remote models that paint. The raw text is what the service knows a model by.
enum class GenerativeFillImageModel {
    gptImage2,
    gptImage15,
    gptImage1,
    gptImage1Mini,
};

std::array<GenerativeFillImageModel, 4> allGenerativeFillImageModels();

QString rawText(GenerativeFillImageModel model);
std::optional<GenerativeFillImageModel> generativeFillImageModelFromRawText(QStringView rawText);
QString title(GenerativeFillImageModel model);

/// What the user asks to be painted into the selection.
struct GenerativeFillRequest {
    QString prompt;
    GenerativeFillImageModel model = GenerativeFillImageModel::gptImage2;
    /// Whether the whole canvas goes along, so that what is painted fits its surroundings.
    bool providesCanvasContext = true;

    friend bool operator==(const GenerativeFillRequest&, const GenerativeFillRequest&) = default;
};

} // namespace quillabrae::effects
