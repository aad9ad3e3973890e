// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/GenerativeFillRequest.h"

#include "model/Vocabulary.h"

namespace quillabrae::effects {
namespace {

struct Row {
    GenerativeFillImageModel value;
    const char* rawText;
    const char* title;
};

constexpr std::array<Row, 4> table{{
    {GenerativeFillImageModel::gptImage2, "gpt-image-2", "GPT Image 2"},
    {GenerativeFillImageModel::gptImage15, "gpt-image-1.5", "GPT Image 1.5"},
    {GenerativeFillImageModel::gptImage1, "gpt-image-1", "GPT Image 1"},
    {GenerativeFillImageModel::gptImage1Mini, "gpt-image-1-mini", "GPT Image 1 Mini"},
}};

const Row& row(GenerativeFillImageModel model) {
    return model::vocabularyRow(std::span<const Row>(table), model);
}

} // namespace

std::array<GenerativeFillImageModel, 4> allGenerativeFillImageModels() {
    std::array<GenerativeFillImageModel, 4> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(GenerativeFillImageModel model) {
    return QString::fromLatin1(row(model).rawText);
}

std::optional<GenerativeFillImageModel> generativeFillImageModelFromRawText(QStringView rawText) {
    return model::caseFromRawText(std::span<const Row>(table), rawText);
}

QString title(GenerativeFillImageModel model) {
    return QString::fromLatin1(row(model).title);
}

} // namespace quillabrae::effects
