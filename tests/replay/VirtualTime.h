// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace quillabrae::replay {

/// The time of a script, in seconds from its start. It stands still but for `advance`.
class VirtualTime {
public:
    using TaskID = std::uint64_t;

    double now() const { return m_now; }

    /// Runs `task` once `delay` seconds from now. Tasks of one instant run in the order in which
    /// they were asked for.
    TaskID schedule(double delay, std::function<void()> task);
    void cancel(TaskID id);

    /// Lets time pass and runs what falls due, each task at its own instant; also what these ask
    /// for within the span.
    void advance(double seconds);

private:
    /// Ordered by instant, then by the order of asking.
    using Key = std::pair<double, TaskID>;

    double m_now = 0.0;
    TaskID m_lastID = 0;
    std::map<Key, std::function<void()>> m_tasks;
};

} // namespace quillabrae::replay
