// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QFileDevice;

namespace quillabrae::platform {

/// Has the system begin to bring what an open file holds to the disk, and does not wait for it.
/// Where the system has no such request it does so in its own time.
void startWriteBack(const QFileDevice& file);

/// Whether a file was last written before the system started: then a cut of power may have come
/// before its content was on the disk. True where that is not known.
bool isFromBeforeSystemStart(const QString& path);

} // namespace quillabrae::platform
