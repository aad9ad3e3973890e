// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CanvasShape.h"

#include "model/Vocabulary.h"

namespace quillabrae::model {
namespace {

struct Row {
    CanvasShape value;
    const char* rawText;
    const char* title;
    const char* symbol;
};

constexpr std::array<Row, 8> table{{
    {CanvasShape::rectangle, "rectangle", "Rectangle", "rectangle"},
    {CanvasShape::roundedRectangle, "roundedRectangle", "Rounded Rectangle", "capsule"},
    {CanvasShape::ellipse, "ellipse", "Ellipse", "circle"},
    {CanvasShape::diamond, "diamond", "Diamond", "diamond"},
    {CanvasShape::trapezoid, "trapezoid", "Trapezoid", "square.on.square"},
    {CanvasShape::parallelogram, "parallelogram", "Parallelogram", "skew"},
    {CanvasShape::triangle, "triangle", "Triangle", "triangle"},
    {CanvasShape::rightTriangle, "rightTriangle", "Right Triangle", "triangle"},
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
    return QString::fromLatin1(row(value).title);
}
QString symbolName(CanvasShape value) {
    return QString::fromLatin1(row(value).symbol);
}

} // namespace quillabrae::model
