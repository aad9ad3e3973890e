// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace quillabrae::shell {

/// Runs something once, right after a window has painted for the first time: the place for work
/// that the first frame does not need.
class FirstFrame final : public QObject {
    Q_OBJECT

public:
    /// Owned by `window`; nothing runs when the window goes before it has painted.
    FirstFrame(QWidget* window, std::function<void()> then);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_then;
};

} // namespace quillabrae::shell
