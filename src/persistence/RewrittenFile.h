// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ByteSink.h"

#include <QString>

#include <functional>

/// Files that are written again and again and have to be whole at every instant.
///
/// A new content is written under a hidden name, ".NAME.UUID.writing", and then takes the target's
/// place at once. The file that it replaces stays beside it as ".NAME.spare" where the file system
/// can exchange two names, for the next content to be written over it: the system then has neither
/// to find memory for a new file nor to give up that of the old one, which is most of what writing
/// a large file costs. So the folder holds at most one content too many.
///
/// A content is complete for every process that looks on return, and whenever this one is killed.
/// Bringing it to the disk is only begun: waiting for that would make each change wait for the
/// disk. A power cut in that time may tear the content; the one that it replaced is the next best.
namespace quillabrae::persistence {

/// Gives `target` the content that `write` streams, or leaves it as it was and nothing beside it.
/// Makes the folder when it is missing, closes it to other users, and takes away what killed writes
/// have left. Only the file's owner can read it. Throws FileError, and what `write` throws.
void rewriteFile(const QString& target, const std::function<void(model::ByteSink&)>& write);

/// Where the content that the present one replaced stands, if it does.
QString replacedContentOf(const QString& target);

/// Puts the present content at `aside`, where there is nothing, and the one that it replaced in its
/// place; both at once where the file system can exchange names. Throws FileError.
void bringBackReplacedContent(const QString& target, const QString& aside);

/// Removes the file and what stands beside it; a failure is ignored.
void removeRewrittenFile(const QString& target);

} // namespace quillabrae::persistence
