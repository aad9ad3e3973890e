// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>

namespace quillabrae::shell {

/// A row of controls that is scrolled by the wheel where it has too little room, without bars: its
/// edges hint at what is beyond them. As wide as its content where there is room.
class SidewaysScroller final : public QScrollArea {
    Q_OBJECT

public:
    /// Takes the content.
    explicit SidewaysScroller(QWidget* content, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    /// Scrolls until a part of the content shows, with `edge` points beside it.
    void bringIntoSight(const QWidget& part, int edge = 0);
    /// What turning the wheel over it does.
    void turn(const QWheelEvent& wheel);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool focusNextPrevChild(bool next) override;
};

} // namespace quillabrae::shell
