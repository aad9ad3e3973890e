// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace quillabrae::platform {

/// Puts bytes on the disk as the one file of a new folder, both closed to everybody but this user,
/// so that nobody else can have made the file, reads it or changes it. Whatever is at `folder` is
/// removed first; a link there is removed, not followed. Throws FileOperationError.
/// Returns the path of the file, under which it is whole.
QString writePrivateFile(const QString& folder, const QString& name, const QByteArray& bytes);

/// Makes a folder that nobody else can enter, and those above it that are missing. One that is
/// there is closed to others if it is this user's. Throws FileOperationError.
void makePrivateFolder(const QString& folder);

/// Whether a file has reached the disk when the call returns, or does some time later.
enum class Reaching { atOnce, later };

/// A new file with these bytes, closed to everybody but this user. Where anything is at `path`, a
/// link for one, that is an error. Throws FileOperationError; there is no file then.
void createPrivateFile(const QString& path, const QByteArray& bytes,
                       Reaching disk = Reaching::atOnce);

/// The suffix of what `placePrivateFile` has under way.
inline constexpr QLatin1StringView unfinishedSuffix(".part");

/// As `createPrivateFile`, but nobody sees half a file at `path`: it is made beside it, as
/// PATH.part, and takes its place whole, also that of a file that is there. What is there as
/// PATH.part, from a program that was killed for one, is an error too.
void placePrivateFile(const QString& path, const QByteArray& bytes,
                      Reaching disk = Reaching::atOnce);

} // namespace quillabrae::platform
