// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/QtCanvasTimers.h"

#include <QTimer>

#include <chrono>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {

void QtCanvasTimers::after(double seconds, std::function<void()> callback) {
    const std::chrono::milliseconds delay(std::lround(seconds * 1000.0));
    QTimer::singleShot(delay, Qt::PreciseTimer, &m_context, std::move(callback));
}

} // namespace quillabrae::canvas
