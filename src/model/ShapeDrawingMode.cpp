// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ShapeDrawingMode.h"

#include "model/Vocabulary.h"

#include <QCoreApplication>

namespace quillabrae::model {
namespace {

struct Row {
    ShapeDrawingMode value;
    const char* rawText;
    const char* title;
    const char* symbol;
    bool fill;
    bool outline;
};

constexpr std::array<Row, 3> table{{
    {ShapeDrawingMode::fill, "fill", QT_TRANSLATE_NOOP("ShapeDrawingMode", "Fill"), "square.fill",
     true, false},
    {ShapeDrawingMode::outline, "outline", QT_TRANSLATE_NOOP("ShapeDrawingMode", "Outline"),
     "square", false, true},
    {ShapeDrawingMode::fillAndOutline, "fillAndOutline",
     QT_TRANSLATE_NOOP("ShapeDrawingMode", "Fill + Outline"), "square.fill.on.square", true, true},
}};

const Row& row(ShapeDrawingMode value) {
    return vocabularyRow(std::span<const Row>(table), value);
}

} // namespace

std::array<ShapeDrawingMode, 3> allShapeDrawingModes() {
    std::array<ShapeDrawingMode, 3> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(ShapeDrawingMode value) {
    return QString::fromLatin1(row(value).rawText);
}

std::optional<ShapeDrawingMode> shapeDrawingModeFromRawText(QStringView rawText) {
    return caseFromRawText(std::span<const Row>(table), rawText);
}

QString title(ShapeDrawingMode value) {
    return QCoreApplication::translate("ShapeDrawingMode", row(value).title);
}
QString symbolName(ShapeDrawingMode value) {
    return QString::fromLatin1(row(value).symbol);
}
bool includesFill(ShapeDrawingMode value) {
    return row(value).fill;
}
bool includesOutline(ShapeDrawingMode value) {
    return row(value).outline;
}

} // namespace quillabrae::model
