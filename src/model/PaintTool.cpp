// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintTool.h"

#include "model/Vocabulary.h"

namespace quillabrae::model {
namespace {

enum Flag : unsigned {
    none = 0,
    continuous = 1U << 0,
    endpoints = 1U << 1,
    constrainsAspect = 1U << 2,
    snapsAngle = 1U << 3,
    hardness = 1U << 4,
    selectionGesture = 1U << 5,
    selectionRegion = 1U << 6,
};

struct Row {
    PaintTool value;
    const char* rawText;
    const char* title;
    const char* symbol;
    const char* help;
    unsigned flags;
};

constexpr std::array<Row, paintToolCount> tools{{
    {PaintTool::rectangleSelect, "select", "Rectangle Select", "selection.pin.in.out",
     "Defines a rectangular or square selection region.", selectionGesture | selectionRegion},
    {PaintTool::lassoSelect, "lassoSelect", "Lasso Select", "lasso",
     "Defines a freeform selection region using its drawn bounds in this demo.",
     selectionGesture | selectionRegion},
    {PaintTool::ellipseSelect, "ellipseSelect", "Ellipse Select", "circle.dashed",
     "Defines an elliptical or circular selection region using its drawn bounds in this demo.",
     selectionGesture | selectionRegion},
    {PaintTool::magicWand, "magicWand", "Magic Wand", "wand.and.stars",
     "Selects visible pixels around the clicked color on the active layer.", selectionGesture},
    {PaintTool::moveSelectedPixels, "moveSelectedPixels", "Move Selected Pixels",
     "cursorarrow.motionlines", "Moves or resizes the pixels inside the current selection.",
     selectionGesture},
    {PaintTool::moveSelection, "moveSelection", "Move Selection", "cursorarrow",
     "Moves or resizes only the selection outline.", selectionGesture},
    {PaintTool::zoom, "zoom", "Zoom", "magnifyingglass",
     "Click or drag on the canvas to zoom around that area.", none},
    {PaintTool::pan, "hand", "Pan", "hand.draw", "Drag to scroll around the image.", none},
    {PaintTool::paintBucket, "fill", "Paint Bucket", "drop.fill",
     "Fills the active canvas area with the primary color.", none},
    {PaintTool::gradient, "gradient", "Gradient", "square.fill.on.square.fill",
     "Draws a primary-to-secondary color gradient.", endpoints | snapsAngle},
    {PaintTool::paintbrush, "brush", "Paintbrush", "paintbrush",
     "Paints soft raster strokes on the active layer.", continuous},
    {PaintTool::eraser, "eraser", "Eraser", "eraser",
     "Erases by painting transparent pixels on the active layer.", continuous | hardness},
    {PaintTool::pencil, "pencil", "Pencil", "pencil",
     "Draws crisp pixel strokes on the active layer.", continuous | hardness},
    {PaintTool::colorPicker, "colorPicker", "Color Picker", "eyedropper",
     "Picks a color from the active layer as the primary color.", none},
    {PaintTool::cloneStamp, "cloneStamp", "Clone Stamp", "rectangle.on.rectangle",
     "Paints by stamping sampled pixels; currently paints with the active color.", continuous},
    {PaintTool::recolor, "recolor", "Recolor", "paintpalette",
     "Replaces color by painting with the active color in this demo.", continuous},
    {PaintTool::text, "text", "Text", "textformat", "Prepares text placement on the active layer.",
     none},
    {PaintTool::lineCurve, "line", "Line/Curve", "line.diagonal",
     "Draws straight lines on the active layer.", endpoints | snapsAngle | hardness},
    {PaintTool::shapes, "shapes", "Shapes", "square.on.circle",
     "Draws a selected predefined shape with fill, outline, or both.",
     endpoints | constrainsAspect},
    {PaintTool::rectangle, "rectangle", "Rectangle", "rectangle", "Legacy rectangle outline tool.",
     endpoints | constrainsAspect},
    {PaintTool::ellipse, "ellipse", "Ellipse", "circle", "Legacy ellipse outline tool.",
     endpoints | constrainsAspect},
}};

const Row& row(PaintTool tool) {
    return vocabularyRow(std::span<const Row>(tools), tool);
}

bool has(PaintTool tool, Flag flag) {
    return (row(tool).flags & flag) != 0;
}

} // namespace

std::array<PaintTool, paintToolCount> allPaintTools() {
    std::array<PaintTool, paintToolCount> all{};
    std::ranges::transform(tools, all.begin(), &Row::value);
    return all;
}

QString rawText(PaintTool tool) {
    return QString::fromLatin1(row(tool).rawText);
}

std::optional<PaintTool> paintToolFromRawText(QStringView rawText) {
    return caseFromRawText(std::span<const Row>(tools), rawText);
}

QString title(PaintTool tool) {
    return QString::fromLatin1(row(tool).title);
}
QString symbolName(PaintTool tool) {
    return QString::fromLatin1(row(tool).symbol);
}
QString helpDescription(PaintTool tool) {
    return QString::fromLatin1(row(tool).help);
}

bool drawsContinuousStroke(PaintTool tool) {
    return has(tool, continuous);
}
bool drawsFromEndpoints(PaintTool tool) {
    return has(tool, endpoints);
}
bool constrainsEndpointAspectRatio(PaintTool tool) {
    return has(tool, constrainsAspect);
}
bool snapsEndpointAngle(PaintTool tool) {
    return has(tool, snapsAngle);
}
bool usesHardnessControl(PaintTool tool) {
    return has(tool, hardness);
}
bool usesSelectionGesture(PaintTool tool) {
    return has(tool, selectionGesture);
}
bool createsSelectionRegion(PaintTool tool) {
    return has(tool, selectionRegion);
}

} // namespace quillabrae::model
