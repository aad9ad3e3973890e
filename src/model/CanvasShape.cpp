// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CanvasShape.h"

#include "model/Vocabulary.h"

#include <QCoreApplication>

namespace quillabrae::model {
namespace {

struct Row {
    CanvasShape value;
    const char* rawText;
    const char* title;
    const char* symbol;
};

constexpr std::array<Row, 8> table{{
    {CanvasShape::rectangle, "rectangle", QT_TRANSLATE_NOOP("CanvasShape", "Rectangle"),
     "rectangle"},
    {CanvasShape::roundedRectangle, "roundedRectangle",
     QT_TRANSLATE_NOOP("CanvasShape", "Rounded Rectangle"), "capsule"},
    {CanvasShape::ellipse, "ellipse", QT_TRANSLATE_NOOP("CanvasShape", "Ellipse"), "circle"},
    {CanvasShape::diamond, "diamond", QT_TRANSLATE_NOOP("CanvasShape", "Diamond"), "diamond"},
    {CanvasShape::trapezoid, "trapezoid", QT_TRANSLATE_NOOP("CanvasShape", "Trapezoid"),
     "square.on.square"},
    {CanvasShape::parallelogram, "parallelogram", QT_TRANSLATE_NOOP("CanvasShape", "Parallelogram"),
     "skew"},
    {CanvasShape::triangle, "triangle", QT_TRANSLATE_NOOP("CanvasShape", "Triangle"), "triangle"},
    {CanvasShape::rightTriangle, "rightTriangle",
     QT_TRANSLATE_NOOP("CanvasShape", "Right Triangle"), "triangle"},
}};

const Row& row(CanvasShape value) {
    return vocabularyRow(std::span<const Row>(table), value);
}

} // namespace

std::array<CanvasShape, 8> allCanvasShapes() {
    std::array<CanvasShape, 8> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(CanvasShape value) {
    return QString::fromLatin1(row(value).rawText);
}

std::optional<CanvasShape> canvasShapeFromRawText(QStringView rawText) {
    return caseFromRawText(std::span<const Row>(table), rawText);
}

QString title(CanvasShape value) {
    return QCoreApplication::translate("CanvasShape", row(value).title);
}
QString symbolName(CanvasShape value) {
    return QString::fromLatin1(row(value).symbol);
}

} // namespace quillabrae::model
