// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CanvasTextAlignment.h"

#include "model/Vocabulary.h"

namespace quillabrae::model {
namespace {

struct Row {
    CanvasTextAlignment value;
    const char* rawText;
};

constexpr std::array<Row, 3> table{{
    {CanvasTextAlignment::left, "left"},
    {CanvasTextAlignment::center, "center"},
    {CanvasTextAlignment::right, "right"},
}};

const Row& row(CanvasTextAlignment value) {
    return vocabularyRow(std::span<const Row>(table), value);
}

} // namespace

std::array<CanvasTextAlignment, 3> allCanvasTextAlignments() {
    std::array<CanvasTextAlignment, 3> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(CanvasTextAlignment value) {
    return QString::fromLatin1(row(value).rawText);
}

std::optional<CanvasTextAlignment> canvasTextAlignmentFromRawText(QStringView rawText) {
    return caseFromRawText(std::span<const Row>(table), rawText);
}

} // namespace quillabrae::model
