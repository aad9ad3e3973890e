// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::model {

/// The part of the picture that keeps its place when the canvas is resized, in reading order.
enum class CanvasAnchor {
    topLeft,
    top,
    topRight,
    left,
    center,
    right,
    bottomLeft,
    bottom,
    bottomRight,
};

std::array<CanvasAnchor, 9> allCanvasAnchors();

QString rawText(CanvasAnchor value);
std::optional<CanvasAnchor> canvasAnchorFromRawText(QStringView rawText);

} // namespace quillabrae::model
