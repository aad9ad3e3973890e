// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasTimers.h"

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace quillabrae::canvas {

/// Time that passes only when told to. Callbacks run in the order in which they fall due, those of
/// the same instant in the order in which they were asked for.
class VirtualTimers final : public CanvasTimers {
public:
    void after(double seconds, std::function<void()> callback) override {
        m_due.emplace(std::pair(m_now + seconds, m_count++), std::move(callback));
    }

    /// Lets time pass and runs what falls due meanwhile, also what that schedules.
    void advance(double seconds) {
        const double end = m_now + seconds;
        while (!m_due.empty() && m_due.begin()->first.first <= end) {
            auto next = m_due.extract(m_due.begin());
            m_now = next.key().first;
            next.mapped()();
        }
        m_now = end;
    }

    /// The next turn of the event loop: what was asked for with no delay.
    void turn() { advance(0.0); }

    double now() const { return m_now; }
    bool isIdle() const { return m_due.empty(); }

private:
    double m_now = 0.0;
    std::uint64_t m_count = 0;
    std::map<std::pair<double, std::uint64_t>, std::function<void()>> m_due;
};

} // namespace quillabrae::canvas
