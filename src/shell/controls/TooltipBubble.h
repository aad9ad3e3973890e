// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/HoverTooltip.h"

#include <QWidget>

class QGraphicsOpacityEffect;

namespace quillabrae::shell {

/// A small raised card with a title and a description, over everything else in its window.
class TooltipBubble final : public QWidget {
    Q_OBJECT

public:
    TooltipBubble(const HoverTooltipText& text, QWidget* window);

    /// Stands beside `anchor` (in the window's coordinates), wholly inside the window.
    void place(const QRect& anchor, HoverTooltipPlacement placement);
    void fadeIn();
    /// Fades and deletes itself.
    void fadeOut();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QGraphicsOpacityEffect* m_opacity;
};

} // namespace quillabrae::shell
