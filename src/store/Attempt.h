// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PixelMemory.h"
#include "store/ProjectStore.h"

#include <new>
#include <type_traits>
#include <utility>

namespace quillabrae::store {

/// A command that may run out of memory: the one place where that is dealt with. Where there is not
/// enough, the open projects are as they were before, or as the command had recorded them, the
/// status line says what failed, and the result is that of a command that did nothing.
///
/// Pixels that could not be had count as well as an exception: the engine tells of both as of a
/// picture that is not there, and a command would go on without it.
class ProjectStore::Attempt {
public:
    /// `name` is the command's, as in "Resize". A command that is part of another one is dealt with
    /// by that.
    template <typename Command>
    static auto run(ProjectStore& store, const QString& name, Command&& command)
        -> std::invoke_result_t<Command> {
        using Result = std::invoke_result_t<Command>;
        if (store.m_attempt && store.m_attempt->isUnderWayHere())
            return std::forward<Command>(command)();
        Attempt attempt(store);
        try {
            if constexpr (std::is_void_v<Result>) {
                std::forward<Command>(command)();
                return attempt.check();
            } else {
                Result result = std::forward<Command>(command)();
                attempt.check();
                return result;
            }
        } catch (const std::bad_alloc&) {
            attempt.giveUp(name);
            return Result();
        }
    }

    /// Throws std::bad_alloc when memory for pixels was refused since the attempt began.
    void check() const { m_refusals.throwIfAny(); }

    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;

private:
    explicit Attempt(ProjectStore& store);
    ~Attempt() { m_store.m_attempt = m_outer; }

    /// False in an event loop that runs within the attempt: what is done there is not part of it.
    bool isUnderWayHere() const;

    /// Where a project's history stands; null for one without any.
    static const model::PaintHistoryEntry* presentEntry(const ProjectStore& store, QUuid projectID);
    void giveUp(const QString& name);
    void closeNewProjects();
    void putBack();

    ProjectStore& m_store;
    const Attempt* m_outer;
    int m_loopLevel;
    raster::PixelRefusals m_refusals;
    std::optional<model::PaintProject> m_before;
    QUuid m_entryBefore;
    std::vector<QUuid> m_openBefore;
};

} // namespace quillabrae::store
