// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ToolOptions.h"

#include "shell/controls/FontFamilyPicker.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/LabeledSlider.h"
#include "shell/controls/Labels.h"
#include "shell/editor/ToolOptionTable.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>

namespace quillabrae::shell {
namespace {

using model::PaintAppSettings;

constexpr int buttonExtent = 28;

QString words(const char* text) {
    return QCoreApplication::translate("ToolOption", text);
}

HoverTooltipText tooltip(const OptionText& text) {
    return {words(text.title), words(text.help)};
}

/// A menu as the toolbar has it: the canvas keeps the keyboard when it is pressed.
void prepareMenu(QComboBox& menu, const OptionText& text) {
    menu.setFocusPolicy(Qt::TabFocus);
    new HoverTooltip(&menu, tooltip(text), HoverTooltipPlacement::below);
}

void addLabel(const OptionText& text, QWidget& control, QHBoxLayout& layout) {
    const QString label = words(text.label);
    if (label.isEmpty()) return;
    QLabel* beside = Labels::muted(label, control.parentWidget());
    beside->setBuddy(&control);
    layout.addWidget(beside);
}

} // namespace

ToolOptions::ToolOptions(store::ProjectStore& store, QWidget* parent)
    : QWidget(parent), m_store(store) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addSpacing(Style::grid / 2);
    connect(&m_store, &store::ProjectStore::settingsChanged, this, &ToolOptions::showSettings);
    showSettings();
}

void ToolOptions::showSettings() {
    const PaintAppSettings& settings = m_store.settings();
    const ToolOptionGroup* chosen = nullptr;
    for (const ToolOptionGroup& candidate : toolOptionGroups()) {
        if (chosen == nullptr && candidate.isShown(settings.selectedTool)) chosen = &candidate;
    }
    for (auto& [table, made] : m_groups) {
        if (table != chosen) made.widget->hide();
    }
    if (chosen == nullptr) return;
    const Group& shown = group(*chosen);
    for (const Show& show : shown.controls) show(settings);
    shown.widget->show();
}

ToolOptions::Group& ToolOptions::group(const ToolOptionGroup& table) {
    const auto [place, isNew] = m_groups.try_emplace(&table);
    Group& made = place->second;
    if (!isNew) return made;
    made.widget = new QWidget(this);
    made.widget->setAccessibleName(words(table.title));
    auto* layout = new QHBoxLayout(made.widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid / 2);
    for (const ToolOption& option : table.options) {
        made.controls.push_back(
            std::visit([&](const auto& row) { return makeControl(row, *layout); }, option));
    }
    this->layout()->addWidget(made.widget);
    return made;
}

ToolOptions::Show ToolOptions::makeControl(const SliderOption& option, QHBoxLayout& layout) {
    auto* slider = new LabeledSlider(tooltip(option.text), {option.minimum, option.maximum},
                                     layout.parentWidget());
    slider->setLabel(words(option.text.label));
    connect(slider, &LabeledSlider::valueChosen, this, [this, field = option.field](int value) {
        m_store.editSettings([&](PaintAppSettings& settings) { settings.*field = value; });
    });
    if (layout.count() > 0) layout.addSpacing(Style::grid);
    layout.addWidget(slider);
    return [slider, &option](const PaintAppSettings& settings) {
        slider->showValue(settings.*option.field);
        slider->setVisible(option.isHeeded(settings.selectedTool));
    };
}

ToolOptions::Show ToolOptions::makeControl(const MenuOption& option, QHBoxLayout& layout) {
    auto* menu = new QComboBox(layout.parentWidget());
    for (const MenuItem& item : option.items()) {
        if (item.symbolName.isEmpty())
            menu->addItem(item.title);
        else
            menu->addItem(Symbols::icon(item.symbolName), item.title);
    }
    prepareMenu(*menu, option.text);
    if (layout.count() > 0) layout.addSpacing(Style::grid / 2);
    addLabel(option.text, *menu, layout);
    layout.addWidget(menu);
    connect(menu, &QComboBox::activated, this, [this, &option](int item) {
        m_store.editSettings([&](PaintAppSettings& settings) { option.choose(settings, item); });
    });
    return [menu, &option](const PaintAppSettings& settings) {
        menu->setCurrentIndex(option.current(settings));
        menu->setPlaceholderText(option.otherValue(settings));
    };
}

ToolOptions::Show ToolOptions::makeControl(const FontFamilyOption& option, QHBoxLayout& layout) {
    auto* picker = new RefreshingFontFamilyPicker(&store::ProjectStore::availableTextFontFamilies,
                                                  layout.parentWidget());
    prepareMenu(*picker, option.text);
    layout.addWidget(picker);
    connect(picker, &RefreshingFontFamilyPicker::familyChosen, this, [this](const QString& family) {
        m_store.editSettings([&](PaintAppSettings& settings) { settings.textFontFamily = family; });
    });
    return
        [picker](const PaintAppSettings& settings) { picker->showFamily(settings.textFontFamily); };
}

ToolOptions::Show ToolOptions::makeControl(const ToggleOption& option, QHBoxLayout& layout) {
    auto* button = new IconButton({.symbolName = QString::fromLatin1(option.symbol),
                                   .title = words(option.text.title),
                                   .help = words(option.text.help),
                                   .extent = buttonExtent,
                                   .iconExtent = Style::smallIcon},
                                  layout.parentWidget());
    button->setCheckable(true);
    connect(button, &QAbstractButton::clicked, this, [this, button, &option] {
        m_store.editSettings([&](PaintAppSettings& settings) { option.press(settings); });
        // Pressing what is on already changes nothing and must not look so.
        button->setChecked(option.isOn(m_store.settings()));
    });
    layout.addWidget(button);
    return [button, &option](const PaintAppSettings& settings) {
        button->setChecked(option.isOn(settings));
    };
}

} // namespace quillabrae::shell
