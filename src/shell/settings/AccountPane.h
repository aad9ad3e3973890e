// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace quillabrae::shell {

struct SettingsContext;

/// Who is signed in, and the way in and out. Owned by `parent`.
QWidget* makeAccountPane(const SettingsContext& context, QWidget* parent);

} // namespace quillabrae::shell
