// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ToolOptionTable.h"

#include "store/ProjectStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace quillabrae::shell {
namespace {

using model::CanvasTextAlignment;
using model::PaintTool;
using Settings = model::PaintAppSettings;

constexpr std::array fontSizes{8,  9,  10, 11, 12, 14, 16,  18,  20,  24,  28,
                               32, 36, 48, 64, 72, 96, 128, 192, 256, 384, 512};

bool always(PaintTool) {
    return true;
}
bool isShapes(PaintTool tool) {
    return tool == PaintTool::shapes;
}
bool usesBrushSize(PaintTool tool) {
    return model::drawsContinuousStroke(tool) || model::drawsFromEndpoints(tool);
}
bool isMagicWand(PaintTool tool) {
    return tool == PaintTool::magicWand;
}
bool isPaintBucket(PaintTool tool) {
    return tool == PaintTool::paintBucket;
}
bool isText(PaintTool tool) {
    return tool == PaintTool::text;
}

template <typename Values, typename Value>
int indexOf(const Values& values, const Value& value) {
    const auto found = std::ranges::find(values, value);
    return found == std::ranges::end(values) ? -1 : static_cast<int>(found - values.begin());
}

QString nothing(const Settings&) {
    return {};
}

std::vector<MenuItem> shapeItems() {
    std::vector<MenuItem> items;
    for (const auto shape : model::allCanvasShapes())
        items.push_back({model::title(shape), model::symbolName(shape)});
    return items;
}
int currentShape(const Settings& settings) {
    return indexOf(model::allCanvasShapes(), settings.selectedShape);
}
void chooseShape(Settings& settings, int item) {
    settings.selectedShape = model::allCanvasShapes().at(static_cast<std::size_t>(item));
}

std::vector<MenuItem> styleItems() {
    std::vector<MenuItem> items;
    for (const auto mode : model::allShapeDrawingModes())
        items.push_back({model::title(mode), model::symbolName(mode)});
    return items;
}
int currentStyle(const Settings& settings) {
    return indexOf(model::allShapeDrawingModes(), settings.shapeDrawingMode);
}
void chooseStyle(Settings& settings, int item) {
    settings.shapeDrawingMode = model::allShapeDrawingModes().at(static_cast<std::size_t>(item));
}

QString pixels(double width) {
    return QCoreApplication::translate("ToolOption", "%1 px").arg(width);
}
std::vector<MenuItem> outlineItems() {
    std::vector<MenuItem> items;
    for (const double width : store::ProjectStore::availableShapeOutlineWidths())
        items.push_back({pixels(width), {}});
    return items;
}
int currentOutline(const Settings& settings) {
    return indexOf(store::ProjectStore::availableShapeOutlineWidths(), settings.shapeOutlineWidth);
}
QString otherOutline(const Settings& settings) {
    return pixels(settings.shapeOutlineWidth);
}
void chooseOutline(Settings& settings, int item) {
    settings.shapeOutlineWidth =
        store::ProjectStore::availableShapeOutlineWidths().at(static_cast<std::size_t>(item));
}

std::vector<MenuItem> fontSizeItems() {
    std::vector<MenuItem> items;
    for (const int size : fontSizes) items.push_back({QString::number(size), {}});
    return items;
}
int currentFontSize(const Settings& settings) {
    const auto* const found = std::ranges::find_if(
        fontSizes, [&](int size) { return static_cast<double>(size) == settings.textFontSize; });
    return found == fontSizes.end() ? -1 : static_cast<int>(found - fontSizes.begin());
}
QString otherFontSize(const Settings& settings) {
    return QString::number(settings.textFontSize);
}
void chooseFontSize(Settings& settings, int item) {
    settings.textFontSize = fontSizes.at(static_cast<std::size_t>(item));
}

template <bool Settings::*Field>
bool isOn(const Settings& settings) {
    return settings.*Field;
}
template <bool Settings::*Field>
void flip(Settings& settings) {
    settings.*Field = !(settings.*Field);
}
template <CanvasTextAlignment Alignment>
bool isAligned(const Settings& settings) {
    return settings.textAlignment == Alignment;
}
template <CanvasTextAlignment Alignment>
void align(Settings& settings) {
    settings.textAlignment = Alignment;
}

// clang-format off
const std::array<ToolOption, 3> shapeOptions{
    MenuOption{{QT_TRANSLATE_NOOP("ToolOption", "Shape"), QT_TRANSLATE_NOOP("ToolOption", "Shape"), QT_TRANSLATE_NOOP("ToolOption", "Sets the shape to draw. Hold Shift while drawing for equal width and height.")},
               shapeItems, currentShape, nothing, chooseShape},
    MenuOption{{QT_TRANSLATE_NOOP("ToolOption", "Style"), QT_TRANSLATE_NOOP("ToolOption", "Shape Style"), QT_TRANSLATE_NOOP("ToolOption", "Uses the secondary color for fill and the primary color for the outline.")},
               styleItems, currentStyle, nothing, chooseStyle},
    MenuOption{{QT_TRANSLATE_NOOP("ToolOption", "Outline"), QT_TRANSLATE_NOOP("ToolOption", "Outline Width"), QT_TRANSLATE_NOOP("ToolOption", "Sets the shape outline width in pixels.")},
               outlineItems, currentOutline, otherOutline, chooseOutline},
};
const std::array<ToolOption, 2> brushOptions{
    SliderOption{{QT_TRANSLATE_NOOP("ToolOption", "Size"), QT_TRANSLATE_NOOP("ToolOption", "Brush Size"), QT_TRANSLATE_NOOP("ToolOption", "Sets the width of the mark in pixels.")},
                 1, 512, &Settings::brushSize, always},
    SliderOption{{QT_TRANSLATE_NOOP("ToolOption", "Hardness"), QT_TRANSLATE_NOOP("ToolOption", "Hardness"), QT_TRANSLATE_NOOP("ToolOption", "Sets how crisp the edge of the mark is.")},
                 0, 100, &Settings::pencilHardness, model::usesHardnessControl},
};
const std::array<ToolOption, 1> wandOptions{
    SliderOption{{QT_TRANSLATE_NOOP("ToolOption", "Match"), QT_TRANSLATE_NOOP("ToolOption", "Magic Wand Match"), QT_TRANSLATE_NOOP("ToolOption", "Controls how similar clicked pixels must be to join the selection.")},
                 0, 100, &Settings::magicWandMatchPercentage, always},
};
const std::array<ToolOption, 1> bucketOptions{
    SliderOption{{QT_TRANSLATE_NOOP("ToolOption", "Match"), QT_TRANSLATE_NOOP("ToolOption", "Paint Bucket Match"), QT_TRANSLATE_NOOP("ToolOption", "Controls how similar clicked pixels must be to receive the fill.")},
                 0, 100, &Settings::paintBucketMatchPercentage, always},
};
const std::array<ToolOption, 9> textOptions{
    FontFamilyOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Font"), QT_TRANSLATE_NOOP("ToolOption", "Sets the family of fonts that text is written in.")}},
    MenuOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Font Size"), QT_TRANSLATE_NOOP("ToolOption", "Sets the size of text.")},
               fontSizeItems, currentFontSize, otherFontSize, chooseFontSize},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Bold"), QT_TRANSLATE_NOOP("ToolOption", "Writes heavier letters.")}, "bold",
                 isOn<&Settings::textBold>, flip<&Settings::textBold>},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Italic"), QT_TRANSLATE_NOOP("ToolOption", "Writes slanted letters.")}, "italic",
                 isOn<&Settings::textItalic>, flip<&Settings::textItalic>},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Underline"), QT_TRANSLATE_NOOP("ToolOption", "Draws a line beneath the text.")}, "underline",
                 isOn<&Settings::textUnderline>, flip<&Settings::textUnderline>},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Strikethrough"), QT_TRANSLATE_NOOP("ToolOption", "Draws a line through the text.")}, "strikethrough",
                 isOn<&Settings::textStrikethrough>, flip<&Settings::textStrikethrough>},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Align Left"), QT_TRANSLATE_NOOP("ToolOption", "Lines the text up at the left.")}, "text.alignleft",
                 isAligned<CanvasTextAlignment::left>, align<CanvasTextAlignment::left>},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Align Center"), QT_TRANSLATE_NOOP("ToolOption", "Centers each line of the text.")}, "text.aligncenter",
                 isAligned<CanvasTextAlignment::center>, align<CanvasTextAlignment::center>},
    ToggleOption{{"", QT_TRANSLATE_NOOP("ToolOption", "Align Right"), QT_TRANSLATE_NOOP("ToolOption", "Lines the text up at the right.")}, "text.alignright",
                 isAligned<CanvasTextAlignment::right>, align<CanvasTextAlignment::right>},
};
const std::array<ToolOptionGroup, 5> groups{{
    {QT_TRANSLATE_NOOP("ToolOption", "Shape Options"), isShapes, shapeOptions},
    {QT_TRANSLATE_NOOP("ToolOption", "Brush Size"), usesBrushSize, brushOptions},
    {QT_TRANSLATE_NOOP("ToolOption", "Magic Wand Match"), isMagicWand, wandOptions},
    {QT_TRANSLATE_NOOP("ToolOption", "Paint Bucket Match"), isPaintBucket, bucketOptions},
    {QT_TRANSLATE_NOOP("ToolOption", "Text Formatting"), isText, textOptions},
}};
// clang-format on

} // namespace

std::span<const ToolOptionGroup> toolOptionGroups() {
    return groups;
}

} // namespace quillabrae::shell
