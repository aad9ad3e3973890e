// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace quillabrae::canvas {

/// Delayed callbacks on the thread that handles input. A callback cannot be called back: whoever
/// schedules one compares a generation counter when it runs. Those still due when the timers are
/// destroyed never run, so the timers must not outlive what they call.
class CanvasTimers {
public:
    virtual ~CanvasTimers() = default;

    /// Runs `callback` once after `seconds`; with 0, on the next turn of the event loop.
    virtual void after(double seconds, std::function<void()> callback) = 0;
};

} // namespace quillabrae::canvas
