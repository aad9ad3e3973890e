// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CanvasAnchor.h"

#include "model/Vocabulary.h"

namespace quillabrae::model {
namespace {

struct Row {
    CanvasAnchor value;
    const char* rawText;
};

constexpr std::array<Row, 9> table{{
    {CanvasAnchor::topLeft, "topLeft"},
    {CanvasAnchor::top, "top"},
    {CanvasAnchor::topRight, "topRight"},
    {CanvasAnchor::left, "left"},
    {CanvasAnchor::center, "center"},
    {CanvasAnchor::right, "right"},
    {CanvasAnchor::bottomLeft, "bottomLeft"},
    {CanvasAnchor::bottom, "bottom"},
    {CanvasAnchor::bottomRight, "bottomRight"},
}};

const Row& row(CanvasAnchor value) {
    return vocabularyRow(std::span<const Row>(table), value);
}

} // namespace

std::array<CanvasAnchor, 9> allCanvasAnchors() {
    std::array<CanvasAnchor, 9> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(CanvasAnchor value) {
    return QString::fromLatin1(row(value).rawText);
}

std::optional<CanvasAnchor> canvasAnchorFromRawText(QStringView rawText) {
    return caseFromRawText(std::span<const Row>(table), rawText);
}

} // namespace quillabrae::model
