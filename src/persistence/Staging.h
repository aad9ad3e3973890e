// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileOperations.h"

#include <QString>

#include <functional>

namespace quillabrae::persistence {

/// A file or folder that is built beside its target under a hidden name, ".NAME.UUID.tmp", and then
/// takes the target's place at once.
///
/// Until `commit` the target stands as it was. Whatever becomes of the saving process, the target's
/// name holds the whole old or the whole new thing, where the file system can swap two names; where
/// it cannot, there is an instant in which the name is missing and both are beside it.
/// Throws platform::FileOperationError.
class Staging {
public:
    /// A link at `target` is followed, so that it goes on pointing to what was saved. A target that
    /// is protected against writing is an error.
    Staging(platform::FileOperations& operations, const QString& target);
    /// Removes what was not committed.
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    /// Where to build. There is nothing yet.
    const QString& path() const { return m_path; }

    /// Puts what stands at `path`, which must be on the disk whole, in the target's place with the
    /// target's access rights, and removes what was there and what killed saves of it have left. On
    /// an error the target is as it was.
    void commit();

private:
    void takePlace();
    /// False when the target has vanished.
    bool replaceTarget();
    void replaceTargetInSteps();
    void removeLeftovers();

    platform::FileOperations& m_operations;
    QString m_target;
    QString m_folder;
    QString m_path;
};

/// Writes one file whole or not at all; `write` fills it. Complete on the disk on return. Never
/// replaces a folder. Throws platform::FileOperationError and whatever `write` throws.
void writeFileAtomically(platform::FileOperations& operations, const QString& target,
                         const std::function<void(platform::DurableFile&)>& write);

} // namespace quillabrae::persistence
