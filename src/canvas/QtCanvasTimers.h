// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasTimers.h"

#include <QObject>

namespace quillabrae::canvas {

/// Timers of the thread's event loop.
class QtCanvasTimers final : public CanvasTimers {
public:
    void after(double seconds, std::function<void()> callback) override;

private:
    QObject m_context;
};

} // namespace quillabrae::canvas
