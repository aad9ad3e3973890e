// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/OpenAIKeychainService.h"
#include "platform/Translations.h"
#include "shell/ShellTest.h"
#include "shell/TestAccount.h"
#include "shell/TestUpdates.h"
#include "shell/app/DesktopWindows.h"
#include "shell/looks/SystemMotion.h"

#include <memory>

namespace quillabrae::shell {

/// The program's real windows in a language, over an open project.
class EveryWindow : public ShellTest {
protected:
    explicit EveryWindow(const QString& languageTag) : language({languageTag}) {
        makeShell();
        makeProject(*store);
        desktop = std::make_unique<DesktopWindows>(
            SettingsContext{*store, preferences, keychain, [](const QUrl&) {}, *account.none},
            motion, *updates);
    }

    std::unique_ptr<QWidget> makeWindow(WindowRole role) {
        return desktop->makeWindow(role, *coordinator);
    }

    platform::Translations language;
    TestUpdates source;
    TestAccount account;
    effects::OpenAIKeychainService keychain{account.secrets};
    SystemMotion motion;
    std::unique_ptr<services::AppUpdateService> updates =
        source.make(QStringLiteral("https://example.org/feed"),
                    folder.filePath(QStringLiteral("u")), preferences, clock);
    std::unique_ptr<DesktopWindows> desktop;
};

} // namespace quillabrae::shell
