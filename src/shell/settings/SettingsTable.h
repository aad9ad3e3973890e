// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintAppSettings.h"
#include "shell/settings/PaintSettingsSection.h"

#include <functional>
#include <span>
#include <variant>

class QUrl;
class QWidget;

namespace quillabrae::effects {
class OpenAIKeychainService;
}

namespace quillabrae::platform {
class Preferences;
}

namespace quillabrae::services {
class QuillabraeAccountService;
}

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// What the settings window shows and changes. All outlive it.
struct SettingsContext {
    store::ProjectStore& store;
    platform::Preferences& preferences;
    effects::OpenAIKeychainService& keychain;
    /// Shows a page in the user's browser.
    std::function<void(const QUrl&)> openURL;
    services::QuillabraeAccountService& account;
};

/// What has to follow a change at once; null for nothing.
using SettingEffect = void (*)(const SettingsContext&);

/// A stored preference that is on or off, and what it is while it is not stored.
struct PreferenceSwitch {
    const char* key;
    bool fallback;
};

struct ToggleSetting {
    const char* title;
    std::variant<PreferenceSwitch, bool model::PaintAppSettings::*> place;
    SettingEffect changed = nullptr;
};

/// One of a few numbers, stored as a preference.
struct ChoiceSetting {
    const char* title;
    const char* key;
    std::span<const int> values;
    /// Each number in words, with the number as %n.
    const char* words;
    int (*current)(const platform::Preferences& preferences);
    SettingEffect changed = nullptr;
};

/// A number of the tool settings.
struct SliderSetting {
    const char* title;
    const char* unit;
    double minimum;
    double maximum;
    double model::PaintAppSettings::*field;
};

/// The selected tool, out of those of the palette.
struct ToolSetting {
    const char* title;
};

/// A word about the rows above it.
struct NoteSetting {
    const char* text;
};

/// What is more than a row.
struct CustomSetting {
    /// Owned by `parent`.
    QWidget* (*make)(const SettingsContext& context, QWidget* parent);
};

using Setting = std::variant<ToggleSetting, ChoiceSetting, SliderSetting, ToolSetting, NoteSetting,
                             CustomSetting>;

/// The rows of a pane, from the top.
std::span<const Setting> settingsTable(PaintSettingsSection section);

} // namespace quillabrae::shell
