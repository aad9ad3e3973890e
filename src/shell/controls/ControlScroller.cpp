// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/ControlScroller.h"

#include "shell/looks/Style.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QChildEvent>
#include <QComboBox>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>
#include <QTimer>

#include <algorithm>

namespace quillabrae::shell {
namespace {

/// What the wheel changes the value of.
QWidget* turnedByWheel(QObject* part) {
    if (qobject_cast<QScrollBar*>(part) != nullptr) return nullptr;
    const bool isTurned = qobject_cast<QAbstractSpinBox*>(part) != nullptr ||
                          qobject_cast<QComboBox*>(part) != nullptr ||
                          qobject_cast<QAbstractSlider*>(part) != nullptr ||
                          qobject_cast<QTabBar*>(part) != nullptr;
    return isTurned ? static_cast<QWidget*>(part) : nullptr;
}

/// Scrolls until the points from `begin` to before `end` show, or the first of them.
void bringIntoSight(QScrollBar& bar, int begin, int end, int room) {
    bar.setValue(std::min(std::max(bar.value(), end - room), begin));
}

} // namespace

ControlScroller::ControlScroller(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    watch(*viewport());
    m_keyboard = connect(qApp, &QApplication::focusChanged, this,
                         [this](const QWidget*, const QWidget* now) { followKeyboard(now); });
}

ControlScroller::~ControlScroller() {
    // The content, which goes later, may have the keyboard.
    disconnect(m_keyboard);
}

bool ControlScroller::hasMore() const {
    return verticalScrollBar()->maximum() > 0 || horizontalScrollBar()->maximum() > 0;
}

void ControlScroller::bringIntoSight(const QWidget& part, QSize around) {
    const QRect all = widget()->rect();
    const QRect place(part.mapTo(widget(), QPoint()), part.size());
    // The bar counts from where text begins.
    const QRect counted =
        QStyle::visualRect(layoutDirection(), all, place)
            .adjusted(-around.width(), -around.height(), around.width(), around.height())
            .intersected(all);
    const QSize room = viewport()->size();
    shell::bringIntoSight(*horizontalScrollBar(), counted.left(), counted.right() + 1,
                          room.width());
    shell::bringIntoSight(*verticalScrollBar(), counted.top(), counted.bottom() + 1, room.height());
}

/// Controls come and go at any depth.
void ControlScroller::watch(QObject& part) {
    part.installEventFilter(this);
    for (QObject* child : part.children()) {
        if (child->isWidgetType()) watch(*child);
    }
}

void ControlScroller::followKeyboard(const QWidget* now) {
    // What is being clicked stays under the pointer.
    if (now == nullptr || QApplication::mouseButtons() != Qt::NoButton) return;
    if (widget() != nullptr && widget()->isAncestorOf(now)) bringIntoSight(*now, {0, Style::grid});
}

bool ControlScroller::focusNextPrevChild(bool next) {
    // The base class would scroll on its own, and aside where text runs from right to left.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    return QWidget::focusNextPrevChild(next);
}

bool ControlScroller::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::ChildAdded: {
            QObject* child = static_cast<QChildEvent*>(event)->child();
            if (child->isWidgetType()) watch(*child);
            break;
        }
        case QEvent::Show: {
            QWidget* control = turnedByWheel(watched);
            if (control != nullptr && control->focusPolicy() == Qt::WheelFocus)
                control->setFocusPolicy(Qt::StrongFocus);
            break;
        }
        case QEvent::Wheel: {
            const QWidget* control = turnedByWheel(watched);
            if (control == nullptr || control->hasFocus() || !hasMore()) break;
            // Goes on to what the control stands in.
            event->ignore();
            return true;
        }
        case QEvent::LayoutRequest:
            // The room that it asks for follows its content.
            if (watched == widget()) updateGeometry();
            break;
        default:
            break;
    }
    return QScrollArea::eventFilter(watched, event);
}

void bringIntoSightLater(QWidget& part) {
    QTimer::singleShot(0, &part, [&part] {
        for (QWidget* around = part.parentWidget(); around != nullptr;
             around = around->parentWidget()) {
            auto* scroller = qobject_cast<ControlScroller*>(around);
            if (scroller != nullptr) scroller->bringIntoSight(part, {0, Style::grid});
        }
    });
}

} // namespace quillabrae::shell
