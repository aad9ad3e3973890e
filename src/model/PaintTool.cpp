// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintTool.h"

#include "model/Vocabulary.h"

#include <QCoreApplication>

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
    {PaintTool::rectangleSelect, "select", QT_TRANSLATE_NOOP("PaintTool", "Rectangle Select"),
     "selection.pin.in.out",
     QT_TRANSLATE_NOOP("PaintTool", "Defines a rectangular or square selection region."),
     selectionGesture | selectionRegion},
    {PaintTool::lassoSelect, "lassoSelect", QT_TRANSLATE_NOOP("PaintTool", "Lasso Select"), "lasso",
     QT_TRANSLATE_NOOP("PaintTool",
                       "Defines a freeform selection region using its drawn bounds in this demo."),
     selectionGesture | selectionRegion},
    {PaintTool::ellipseSelect, "ellipseSelect", QT_TRANSLATE_NOOP("PaintTool", "Ellipse Select"),
     "circle.dashed",
     QT_TRANSLATE_NOOP(
         "PaintTool",
         "Defines an elliptical or circular selection region using its drawn bounds in this demo."),
     selectionGesture | selectionRegion},
    {PaintTool::magicWand, "magicWand", QT_TRANSLATE_NOOP("PaintTool", "Magic Wand"),
     "wand.and.stars",
     QT_TRANSLATE_NOOP("PaintTool",
                       "Selects visible pixels around the clicked color on the active layer."),
     selectionGesture},
    {PaintTool::moveSelectedPixels, "moveSelectedPixels",
     QT_TRANSLATE_NOOP("PaintTool", "Move Selected Pixels"), "cursorarrow.motionlines",
     QT_TRANSLATE_NOOP("PaintTool", "Moves or resizes the pixels inside the current selection."),
     selectionGesture},
    {PaintTool::moveSelection, "moveSelection", QT_TRANSLATE_NOOP("PaintTool", "Move Selection"),
     "cursorarrow", QT_TRANSLATE_NOOP("PaintTool", "Moves or resizes only the selection outline."),
     selectionGesture},
    {PaintTool::zoom, "zoom", QT_TRANSLATE_NOOP("PaintTool", "Zoom"), "magnifyingglass",
     QT_TRANSLATE_NOOP("PaintTool", "Click or drag on the canvas to zoom around that area."), none},
    {PaintTool::pan, "hand", QT_TRANSLATE_NOOP("PaintTool", "Pan"), "hand.draw",
     QT_TRANSLATE_NOOP("PaintTool", "Drag to scroll around the image."), none},
    {PaintTool::paintBucket, "fill", QT_TRANSLATE_NOOP("PaintTool", "Paint Bucket"), "drop.fill",
     QT_TRANSLATE_NOOP("PaintTool", "Fills the active canvas area with the primary color."), none},
    {PaintTool::gradient, "gradient", QT_TRANSLATE_NOOP("PaintTool", "Gradient"),
     "square.fill.on.square.fill",
     QT_TRANSLATE_NOOP("PaintTool", "Draws a primary-to-secondary color gradient."),
     endpoints | snapsAngle},
    {PaintTool::paintbrush, "brush", QT_TRANSLATE_NOOP("PaintTool", "Paintbrush"), "paintbrush",
     QT_TRANSLATE_NOOP("PaintTool", "Paints soft raster strokes on the active layer."), continuous},
    {PaintTool::eraser, "eraser", QT_TRANSLATE_NOOP("PaintTool", "Eraser"), "eraser",
     QT_TRANSLATE_NOOP("PaintTool", "Erases by painting transparent pixels on the active layer."),
     continuous | hardness},
    {PaintTool::pencil, "pencil", QT_TRANSLATE_NOOP("PaintTool", "Pencil"), "pencil",
     QT_TRANSLATE_NOOP("PaintTool", "Draws crisp pixel strokes on the active layer."),
     continuous | hardness},
    {PaintTool::colorPicker, "colorPicker", QT_TRANSLATE_NOOP("PaintTool", "Color Picker"),
     "eyedropper",
     QT_TRANSLATE_NOOP("PaintTool", "Picks a color from the active layer as the primary color."),
     none},
    {PaintTool::cloneStamp, "cloneStamp", QT_TRANSLATE_NOOP("PaintTool", "Clone Stamp"),
     "rectangle.on.rectangle",
     QT_TRANSLATE_NOOP(
         "PaintTool", "Paints by stamping sampled pixels; currently paints with the active color."),
     continuous},
    {PaintTool::recolor, "recolor", QT_TRANSLATE_NOOP("PaintTool", "Recolor"), "paintpalette",
     QT_TRANSLATE_NOOP("PaintTool",
                       "Replaces color by painting with the active color in this demo."),
     continuous},
    {PaintTool::text, "text", QT_TRANSLATE_NOOP("PaintTool", "Text"), "textformat",
     QT_TRANSLATE_NOOP("PaintTool", "Prepares text placement on the active layer."), none},
    {PaintTool::lineCurve, "line", QT_TRANSLATE_NOOP("PaintTool", "Line/Curve"), "line.diagonal",
     QT_TRANSLATE_NOOP("PaintTool", "Draws straight lines on the active layer."),
     endpoints | snapsAngle | hardness},
    {PaintTool::shapes, "shapes", QT_TRANSLATE_NOOP("PaintTool", "Shapes"), "square.on.circle",
     QT_TRANSLATE_NOOP("PaintTool",
                       "Draws a selected predefined shape with fill, outline, or both."),
     endpoints | constrainsAspect},
    {PaintTool::rectangle, "rectangle", QT_TRANSLATE_NOOP("PaintTool", "Rectangle"), "rectangle",
     QT_TRANSLATE_NOOP("PaintTool", "Legacy rectangle outline tool."),
     endpoints | constrainsAspect},
    {PaintTool::ellipse, "ellipse", QT_TRANSLATE_NOOP("PaintTool", "Ellipse"), "circle",
     QT_TRANSLATE_NOOP("PaintTool", "Legacy ellipse outline tool."), endpoints | constrainsAspect},
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
    return QCoreApplication::translate("PaintTool", row(tool).title);
}
QString symbolName(PaintTool tool) {
    return QString::fromLatin1(row(tool).symbol);
}
QString helpDescription(PaintTool tool) {
    return QCoreApplication::translate("PaintTool", row(tool).help);
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
