// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/VirtualTime.h"

#include <algorithm>

namespace quillabrae::replay {

VirtualTime::TaskID VirtualTime::schedule(double delay, std::function<void()> task) {
    const TaskID id = ++m_lastID;
    m_tasks.emplace(Key(m_now + std::max(delay, 0.0), id), std::move(task));
    return id;
}

void VirtualTime::cancel(TaskID id) {
    std::erase_if(m_tasks, [id](const auto& task) { return task.first.second == id; });
}

void VirtualTime::advance(double seconds) {
    const double end = m_now + seconds;
    while (!m_tasks.empty() && m_tasks.begin()->first.first <= end) {
        auto due = m_tasks.extract(m_tasks.begin());
        m_now = std::max(m_now, due.key().first);
        due.mapped()();
    }
    m_now = end;
}

} // namespace quillabrae::replay
