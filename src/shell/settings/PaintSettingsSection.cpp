// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/PaintSettingsSection.h"

namespace quillabrae::shell {
namespace {

using enum PaintSettingsSection;

struct Row {
    PaintSettingsSection section = account;
    const char* title = "";
    const char* symbolName = "";
};

constexpr std::array rows{
    Row{account, "Account", "person.crop.circle"},
    Row{canvas, "Canvas", "paintbrush"},
    Row{historyAndRestore, "History & Restore", "clock.arrow.circlepath"},
    Row{view, "View", "macwindow"},
    Row{privacy, "Privacy", "hand.raised"},
    Row{intelligence, "Intelligence", "sparkles"},
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
    return QString::fromLatin1(row(section).title);
}

QString symbolName(PaintSettingsSection section) {
    return QString::fromLatin1(row(section).symbolName);
}

} // namespace quillabrae::shell
