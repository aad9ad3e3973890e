// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintAppSettings.h"

#include <QString>

#include <span>
#include <variant>
#include <vector>

namespace quillabrae::shell {

/// What an option says of itself: the text beside it, and its tooltip.
struct OptionText {
    const char* label;
    const char* title;
    const char* help;
};

/// A whole number on a slider.
struct SliderOption {
    OptionText text;
    int minimum;
    int maximum;
    double model::PaintAppSettings::*field;
    /// Whether the tool heeds it, among those that show the group.
    bool (*isHeeded)(model::PaintTool tool);
};

struct MenuItem {
    QString title;
    /// Empty for none.
    QString symbolName;
};

/// One of a few values.
struct MenuOption {
    OptionText text;
    std::vector<MenuItem> (*items)();
    /// The item that the settings stand at; -1 when they stand at another value.
    int (*current)(const model::PaintAppSettings& settings);
    /// What stands in the menu for a value that none of the items has.
    QString (*otherValue)(const model::PaintAppSettings& settings);
    void (*choose)(model::PaintAppSettings& settings, int item);
};

/// A family of the system's fonts, which are asked for when the menu opens.
struct FontFamilyOption {
    OptionText text;
};

/// A button that is on or off; pressing it writes what is the other way around.
struct ToggleOption {
    OptionText text;
    const char* symbol;
    bool (*isOn)(const model::PaintAppSettings& settings);
    void (*press)(model::PaintAppSettings& settings);
};

using ToolOption = std::variant<SliderOption, MenuOption, FontFamilyOption, ToggleOption>;

/// The options that belong together, and the tools that show them.
struct ToolOptionGroup {
    const char* title;
    bool (*isShown)(model::PaintTool tool);
    std::span<const ToolOption> options;
};

/// Of these the first one that the tool shows is its group.
std::span<const ToolOptionGroup> toolOptionGroups();

} // namespace quillabrae::shell
