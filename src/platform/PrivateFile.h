// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace quillabrae::platform {

/// Puts bytes on the disk as the one file of a new folder, both closed to everybody but this user,
/// so that nobody else can have made the file, reads it or changes it. Whatever is at `folder` is
/// removed first; a link there is removed, not followed. Throws FileOperationError.
/// Returns the path of the file.
QString writePrivateFile(const QString& folder, const QString& name, const QByteArray& bytes);

/// A new file with these bytes, on the disk and closed to everybody but this user. Where anything
/// is at `path`, a link for one, that is an error. Throws FileOperationError; there is no file
/// then.
void createPrivateFile(const QString& path, const QByteArray& bytes);

} // namespace quillabrae::platform
