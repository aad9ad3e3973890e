// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QFileDevice;

namespace quillabrae::platform {

/// Has the system begin to bring what an open file holds to the disk, and does not wait for it.
/// Where the system has no such request it does so in its own time.
void startWriteBack(const QFileDevice& file);

} // namespace quillabrae::platform
