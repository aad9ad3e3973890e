// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/ScrollHints.h"

#include "shell/looks/Style.h"

#include <QEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

namespace quillabrae::shell {
namespace {

constexpr int hintWidth = 36;
constexpr qreal arrowReach = 4.0;

} // namespace

ScrollHints::ScrollHints(QScrollArea& scroller) : QWidget(&scroller), m_scroller(scroller) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    const QScrollBar* bar = scroller.horizontalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    connect(bar, &QScrollBar::rangeChanged, this, qOverload<>(&QWidget::update));
    scroller.installEventFilter(this);
}

/// The bar counts from the side that text begins at.
bool ScrollHints::hasMoreAt(Qt::LayoutDirection side) const {
    const QScrollBar* bar = m_scroller.horizontalScrollBar();
    return side == layoutDirection() ? bar->value() > bar->minimum()
                                     : bar->value() < bar->maximum();
}

bool ScrollHints::hasMoreAtLeft() const {
    return hasMoreAt(Qt::LeftToRight);
}

bool ScrollHints::hasMoreAtRight() const {
    return hasMoreAt(Qt::RightToLeft);
}

bool ScrollHints::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show) {
        setGeometry(m_scroller.rect());
        raise();
    }
    return QWidget::eventFilter(watched, event);
}

void ScrollHints::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasMoreAtLeft()) paintHint(painter, Qt::LeftToRight);
    if (hasMoreAtRight()) paintHint(painter, Qt::RightToLeft);
}

/// At the edge that text in that direction begins at.
void ScrollHints::paintHint(QPainter& painter, Qt::LayoutDirection side) const {
    const bool isLeft = side == Qt::LeftToRight;
    const QRect area(isLeft ? 0 : width() - hintWidth, 0, hintWidth, height());
    QLinearGradient fade(isLeft ? area.topLeft() : area.topRight(),
                         isLeft ? area.topRight() : area.topLeft());
    QColor ground = palette().color(QPalette::Window);
    fade.setColorAt(0.0, ground);
    fade.setColorAt(0.45, ground);
    ground.setAlpha(0);
    fade.setColorAt(1.0, ground);
    painter.fillRect(area, fade);
    const qreal way = isLeft ? -1.0 : 1.0;
    const QPointF tip(isLeft ? 4.0 : width() - 4.0, height() / 2.0);
    const QPointF back = tip - QPointF(way * arrowReach, 0.0);
    const QPolygonF arrow{back - QPointF(0.0, arrowReach), tip, back + QPointF(0.0, arrowReach)};
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1.6, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.drawPolyline(arrow);
}

} // namespace quillabrae::shell
