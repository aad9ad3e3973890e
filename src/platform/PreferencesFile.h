// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

/// The INI file of the preferences, which several running programs may write.
///
/// QSettings reads it, but does not write it: it takes a file that it cannot read for an empty one,
/// and puts an empty one in its place when the disk is full. It writes a file beside it instead,
/// which takes the place once all that it is to say has been read back.
namespace quillabrae::platform {

/// Changes some values, an invalid one stands for a removed key, and leaves the others as they are,
/// whoever wrote them. The file is this user's alone. False where that fails; the file is as it was
/// then, and nothing is beside it.
bool rewritePreferences(const QString& file, const QHash<QString, QVariant>& changes);

/// Takes away what a program that was killed while it wrote has left.
void removeKilledPreferences(const QString& file);

} // namespace quillabrae::platform
