// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/ControlScroller.h"

namespace quillabrae::shell {

/// A row of controls that is scrolled by the wheel where it has too little room, without bars: its
/// edges hint at what is beyond them. As wide as its content where there is room.
class SidewaysScroller final : public ControlScroller {
    Q_OBJECT

public:
    /// Takes the content.
    explicit SidewaysScroller(QWidget* content, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    bool hasMore() const override;
    /// What turning the wheel over it does.
    void turn(const QWheelEvent& wheel);

protected:
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace quillabrae::shell
