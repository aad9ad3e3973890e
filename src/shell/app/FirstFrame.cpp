// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/FirstFrame.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace quillabrae::shell {

FirstFrame::FirstFrame(QWidget* window, std::function<void()> then)
    : QObject(window), m_then(std::move(then)) {
    window->installEventFilter(this);
}

bool FirstFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        QTimer::singleShot(0, this, [this] {
            m_then();
            deleteLater();
        });
    }
    return false;
}

} // namespace quillabrae::shell
