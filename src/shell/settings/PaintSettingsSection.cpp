// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/PaintSettingsSection.h"

#include <QCoreApplication>

namespace quillabrae::shell {
namespace {

using enum PaintSettingsSection;

struct Row {
    PaintSettingsSection section = account;
    const char* title = "";
    const char* symbolName = "";
};

constexpr std::array rows{
    Row{account, QT_TRANSLATE_NOOP("Settings", "Account"), "person.crop.circle"},
    Row{canvas, QT_TRANSLATE_NOOP("Settings", "Canvas"), "paintbrush"},
    Row{historyAndRestore, QT_TRANSLATE_NOOP("Settings", "History & Restore"),
        "clock.arrow.circlepath"},
    Row{view, QT_TRANSLATE_NOOP("Settings", "View"), "macwindow"},
    Row{privacy, QT_TRANSLATE_NOOP("Settings", "Privacy"), "hand.raised"},
    Row{intelligence, QT_TRANSLATE_NOOP("Settings", "Intelligence"), "sparkles"},
};

const Row& row(PaintSettingsSection section) {
    return rows.at(static_cast<std::size_t>(section));
}

} // namespace

std::array<PaintSettingsSection, 6> allPaintSettingsSections() {
    std::array<PaintSettingsSection, rows.size()> sections{};
    for (std::size_t index = 0; index < rows.size(); ++index)
        sections.at(index) = rows.at(index).section;
    return sections;
}

QString title(PaintSettingsSection section) {
    return QCoreApplication::translate("Settings", row(section).title);
}

QString symbolName(PaintSettingsSection section) {
    return QString::fromLatin1(row(section).symbolName);
}

} // namespace quillabrae::shell
