// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/SettingsTable.h"

#include "persistence/RecoverySession.h"
#include "shell/settings/APIKeyPane.h"
#include "shell/settings/AccountPane.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>

#include <array>

namespace quillabrae::shell {
namespace {

using Settings = model::PaintAppSettings;

void rewriteRecoveryFile(const SettingsContext& context) {
    context.store.persistAutosavedSession();
}

constexpr std::array historyEntryLimits{10, 25, 50, 100};

// clang-format off
const std::array<Setting, 1> accountPane{
    CustomSetting{makeAccountPane},
};
const std::array<Setting, 4> canvasPane{
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Ask before flattening layers when saving images"), PreferenceSwitch{"Quillabrae.confirmBeforeFlattening", true}},
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Show pixel grid"), &Settings::showsPixelGrid},
    ToolSetting{QT_TRANSLATE_NOOP("Settings", "Default tool")},
    SliderSetting{QT_TRANSLATE_NOOP("Settings", "Brush size"), QT_TRANSLATE_NOOP("Settings", "px"), 1, 512, &Settings::brushSize},
};
const std::array<Setting, 4> historyPane{
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Restore recovery session on launch"), PreferenceSwitch{"Quillabrae.restoreRecoveryOnLaunch", true}, rewriteRecoveryFile},
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Keep edit history in recovered projects"), PreferenceSwitch{"Quillabrae.keepRecoveryHistory", true}, rewriteRecoveryFile},
    ChoiceSetting{QT_TRANSLATE_NOOP("Settings", "History entries per project"), "Quillabrae.recoveryHistoryEntryLimit", historyEntryLimits, QT_TRANSLATE_N_NOOP("Settings", "%n steps"),
                  persistence::RecoveryPreferences::historyEntryLimit, rewriteRecoveryFile},
    NoteSetting{QT_TRANSLATE_NOOP("Settings", "Recovery history stores recent full-project snapshots. Quillabrae may keep fewer entries for large projects to keep recovery storage near 256 MB on disk.")},
};
const std::array<Setting, 1> viewPane{
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Show welcome window when reopening from Dock"), PreferenceSwitch{"Quillabrae.showWelcomeOnDockReopen", true}},
};
const std::array<Setting, 2> privacyPane{
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Share anonymous usage data"), PreferenceSwitch{"Quillabrae.shareAnonymousUsageData", true}},
    NoteSetting{QT_TRANSLATE_NOOP("Settings", "Helps improve Quillabrae by sharing anonymous first-launch, app version, and feature-usage events. Filenames, images, prompts, account details, and persistent identifiers are never included.")},
};
const std::array<Setting, 3> intelligencePane{
    CustomSetting{makeAPIKeyPane},
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Enable generative fill when API key is saved"), PreferenceSwitch{"Quillabrae.enableFutureGenerativeFill", false}},
    ToggleSetting{QT_TRANSLATE_NOOP("Settings", "Send selected pixels as edit context"), PreferenceSwitch{"Quillabrae.sendSelectionContextToAI", true}},
};
// clang-format on

} // namespace

std::span<const Setting> settingsTable(PaintSettingsSection section) {
    switch (section) {
        case PaintSettingsSection::account:
            return accountPane;
        case PaintSettingsSection::canvas:
            return canvasPane;
        case PaintSettingsSection::historyAndRestore:
            return historyPane;
        case PaintSettingsSection::view:
            return viewPane;
        case PaintSettingsSection::privacy:
            return privacyPane;
        case PaintSettingsSection::intelligence:
            return intelligencePane;
    }
    return {};
}

} // namespace quillabrae::shell
