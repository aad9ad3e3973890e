// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settings/SettingsTable.h"

#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace quillabrae::shell {

/// The rows of one section, as controls. What a control shows is what is stored: it follows the
/// store, and whatever else has changed when it is refreshed.
class SettingsPane final : public QWidget {
    Q_OBJECT

public:
    SettingsPane(PaintSettingsSection section, SettingsContext context, QWidget* parent = nullptr);

    /// Reads everything again.
    void refresh();

private:
    /// Shows in a control what is stored.
    using Show = std::function<void()>;

    Show makeRow(const ToggleSetting& setting, QVBoxLayout& layout);
    Show makeRow(const ChoiceSetting& setting, QVBoxLayout& layout);
    Show makeRow(const SliderSetting& setting, QVBoxLayout& layout);
    Show makeRow(const ToolSetting& setting, QVBoxLayout& layout);
    Show makeRow(const NoteSetting& setting, QVBoxLayout& layout);
    Show makeRow(const CustomSetting& setting, QVBoxLayout& layout);
    bool isOn(const ToggleSetting& setting) const;
    void turn(const ToggleSetting& setting, bool isOn);
    void choose(const ChoiceSetting& setting, int value);
    void tellOfChange(SettingEffect effect) const;

    SettingsContext m_context;
    std::vector<Show> m_shows;
};

} // namespace quillabrae::shell
