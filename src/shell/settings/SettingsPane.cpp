// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/SettingsPane.h"

#include "platform/Preferences.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SliderRow.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"
#include "store/ProjectStore.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>

namespace quillabrae::shell {
namespace {

constexpr qreal titleFactor = 1.4;
constexpr int rowSpacing = 14;
constexpr int menuWidth = 168;

QString words(const char* text) {
    return QCoreApplication::translate("Settings", text);
}

/// A menu with its title before it.
QComboBox* addMenu(const char* title, QVBoxLayout& layout) {
    QWidget* parent = layout.parentWidget();
    auto* menu = new QComboBox(parent);
    const QString text = words(title);
    menu->setAccessibleName(text);
    menu->setMinimumWidth(menuWidth);
    QLabel* label = Labels::body(text, parent);
    label->setBuddy(menu);
    auto* row = new QHBoxLayout;
    row->addWidget(label, 1);
    row->addWidget(menu);
    layout.addLayout(row);
    return menu;
}

} // namespace

SettingsPane::SettingsPane(PaintSettingsSection section, SettingsContext context, QWidget* parent)
    : QWidget(parent), m_context(std::move(context)) {
    setAccessibleName(title(section));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4 * Style::grid, 3 * Style::grid, 4 * Style::grid, 3 * Style::grid);
    layout->setSpacing(rowSpacing);
    layout->addWidget(Labels::title(title(section), titleFactor, this));
    for (const Setting& setting : settingsTable(section))
        m_shows.push_back(
            std::visit([&](const auto& row) { return makeRow(row, *layout); }, setting));
    layout->addStretch();
    connect(&m_context.store, &store::ProjectStore::settingsChanged, this, &SettingsPane::refresh);
    refresh();
}

void SettingsPane::refresh() {
    for (const Show& show : m_shows) show();
}

void SettingsPane::tellOfChange(SettingEffect effect) const {
    if (effect != nullptr) effect(m_context);
}

bool SettingsPane::isOn(const ToggleSetting& setting) const {
    if (const auto* stored = std::get_if<PreferenceSwitch>(&setting.place))
        return m_context.preferences.boolean(QString::fromLatin1(stored->key), stored->fallback);
    return m_context.store.settings().*std::get<bool model::PaintAppSettings::*>(setting.place);
}

void SettingsPane::turn(const ToggleSetting& setting, bool isOn) {
    if (const auto* stored = std::get_if<PreferenceSwitch>(&setting.place)) {
        m_context.preferences.setValue(QString::fromLatin1(stored->key), isOn);
    } else {
        const auto field = std::get<bool model::PaintAppSettings::*>(setting.place);
        m_context.store.editSettings([&](auto& settings) { settings.*field = isOn; });
    }
    tellOfChange(setting.changed);
}

SettingsPane::Show SettingsPane::makeRow(const ToggleSetting& setting, QVBoxLayout& layout) {
    auto* box = new QCheckBox(words(setting.title), this);
    layout.addWidget(box);
    connect(box, &QCheckBox::clicked, this, [this, &setting](bool isOn) { turn(setting, isOn); });
    return [this, box, &setting] { box->setChecked(isOn(setting)); };
}

void SettingsPane::choose(const ChoiceSetting& setting, int value) {
    m_context.preferences.setValue(QString::fromLatin1(setting.key), value);
    tellOfChange(setting.changed);
}

SettingsPane::Show SettingsPane::makeRow(const ChoiceSetting& setting, QVBoxLayout& layout) {
    QComboBox* menu = addMenu(setting.title, layout);
    for (const int value : setting.values)
        menu->addItem(QCoreApplication::translate("Settings", setting.words, nullptr, value),
                      value);
    connect(menu, &QComboBox::activated, this,
            [this, menu, &setting](int item) { choose(setting, menu->itemData(item).toInt()); });
    return [this, menu, &setting] {
        menu->setCurrentIndex(menu->findData(setting.current(m_context.preferences)));
    };
}

SettingsPane::Show SettingsPane::makeRow(const SliderSetting& setting, QVBoxLayout& layout) {
    auto* slider = new SliderRow(words(setting.title), words(setting.unit),
                                 {setting.minimum, setting.maximum, 1.0}, this);
    layout.addWidget(slider);
    connect(slider, &SliderRow::valueSettled, this, [this, field = setting.field](double value) {
        m_context.store.editSettings([&](auto& settings) { settings.*field = value; });
    });
    return [this, slider, field = setting.field] {
        slider->showValue(m_context.store.settings().*field);
    };
}

SettingsPane::Show SettingsPane::makeRow(const ToolSetting& setting, QVBoxLayout& layout) {
    QComboBox* menu = addMenu(setting.title, layout);
    menu->setMaxVisibleItems(static_cast<int>(paletteTools.size()));
    for (const model::PaintTool tool : paletteTools)
        menu->addItem(Symbols::icon(model::symbolName(tool)), model::title(tool),
                      static_cast<int>(tool));
    connect(menu, &QComboBox::activated, this, [this, menu](int item) {
        const auto tool = static_cast<model::PaintTool>(menu->itemData(item).toInt());
        m_context.store.editSettings([tool](auto& settings) { settings.selectedTool = tool; });
    });
    return [this, menu] {
        // A tool that is not in the palette is none of the menu's, and stands in it all the same.
        const model::PaintTool tool = m_context.store.settings().selectedTool;
        menu->setCurrentIndex(menu->findData(static_cast<int>(tool)));
        menu->setPlaceholderText(model::title(tool));
    };
}

SettingsPane::Show SettingsPane::makeRow(const NoteSetting& setting, QVBoxLayout& layout) {
    QLabel* note = Labels::muted(words(setting.text), this);
    note->setWordWrap(true);
    layout.addWidget(note);
    return [] {};
}

SettingsPane::Show SettingsPane::makeRow(const CustomSetting& setting, QVBoxLayout& layout) {
    layout.addWidget(setting.make(m_context, this));
    return [] {};
}

} // namespace quillabrae::shell
