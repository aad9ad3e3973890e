// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>

namespace quillabrae::shell {

/// The panes of the settings window, in their order.
enum class PaintSettingsSection { account, canvas, historyAndRestore, view, privacy, intelligence };

std::array<PaintSettingsSection, 6> allPaintSettingsSections();
QString title(PaintSettingsSection section);
QString symbolName(PaintSettingsSection section);

} // namespace quillabrae::shell
