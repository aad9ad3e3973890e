// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QByteArray;

namespace quillabrae::platform {

/// Tells an X11 desktop that the start it has shown the user a busy pointer for since is over, by
/// the id that it gave the start. A start whose window is the program's first ends by itself; one
/// that was handed to a running program does not. Nothing on other window systems and for no id.
void endStartupNotification(const QByteArray& id);

} // namespace quillabrae::platform
