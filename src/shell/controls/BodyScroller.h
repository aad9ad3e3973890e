// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/ControlScroller.h"

namespace quillabrae::shell {

/// A body that is content with the least height that its layout needs at its width.
class ScrolledBody : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    int heightForWidth(int width) const override;
};

/// Shows a body as if it were not there, and scrolls it only where it gets less room than it needs,
/// as in a window that is cut to its screen. A body of nothing but texts then takes the keyboard
/// itself, so that the arrow and page keys scroll it; give the scroller of such a body an
/// accessible name.
class BodyScroller final : public ControlScroller {
    Q_OBJECT

public:
    /// Takes the body, which has a layout by the time that it is shown.
    explicit BodyScroller(ScrolledBody* body, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    /// What the body needs.
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    /// What the body needs at that width.
    int heightForWidth(int width) const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void fitBars();
    void fitFocusPolicy();
};

} // namespace quillabrae::shell
