// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/TextSize.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

namespace quillabrae::shell::TextSize {
namespace {

/// How wide a digit of the usual size is, in points.
constexpr qreal usualDigit = 8.0;
constexpr int air = 8;

/// Runs something now and whenever an event of certain types comes, before the widget gets it, for
/// as long as the widget lives.
class Follower final : public QObject {
public:
    Follower(QWidget& widget, std::initializer_list<QEvent::Type> types, std::function<void()> fit)
        : QObject(&widget), m_types(types), m_fit(std::move(fit)) {
        widget.installEventFilter(this);
        m_fit();
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (std::ranges::find(m_types, event->type()) != m_types.end()) m_fit();
        return false;
    }

private:
    std::vector<QEvent::Type> m_types;
    std::function<void()> m_fit;
};

/// Keeps a label's letters in proportion. The label itself is told of no change, since the size is
/// its own; what it stands in is.
class FontScale final : public QObject {
public:
    FontScale(QLabel& label, qreal factor) : QObject(&label), m_label(label), m_factor(factor) {
        label.installEventFilter(this);
        followParent();
        fit();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == &m_label && event->type() == QEvent::ParentChange) followParent();
        if (watched == m_parent && event->type() == QEvent::FontChange) fit();
        return false;
    }

private:
    void followParent() {
        if (m_parent) m_parent->removeEventFilter(this);
        m_parent = m_label.parentWidget();
        if (m_parent) m_parent->installEventFilter(this);
    }
    void fit() {
        const QFont usual = QApplication::font(&m_label);
        QFont font = m_label.font();
        if (usual.pointSizeF() > 0)
            font.setPointSizeF(usual.pointSizeF() * m_factor);
        else
            font.setPixelSize(qRound(usual.pixelSize() * m_factor));
        m_label.setFont(font);
    }

    QLabel& m_label;
    QPointer<QWidget> m_parent;
    qreal m_factor;
};

/// The size that the window's contents need at a width of `least` or more.
QSize contentsSize(const QWidget& window, QSize least) {
    QLayout* layout = window.layout();
    if (layout == nullptr) return least;
    QSize size = layout->totalMinimumSize().expandedTo(least);
    if (layout->hasHeightForWidth())
        size.setHeight(std::max(least.height(), layout->totalMinimumHeightForWidth(size.width())));
    return size;
}

/// The same within the screen.
QSize neededSize(const QWidget& window, QSize least) {
    return contentsSize(window, least).boundedTo(roomFor(window));
}

/// After which a window may need another size: before it is placed, while it is shown, and once it
/// is active, when its frame is known.
constexpr auto resizing = {QEvent::Polish, QEvent::LayoutRequest, QEvent::Show,
                           QEvent::WindowActivate, QEvent::ScreenChangeInternal};

/// What the window manager has put around the window, as it says now: a widget remembers what it
/// said when it was shown.
QMargins frameAround(const QWidget& window) {
    const QWindow* handle = window.windowHandle();
    return handle != nullptr ? handle->frameMargins() : QMargins();
}

/// Moves a window that has grown beyond an edge of its screen, frame included, along the sides that
/// did.
void keepOnScreen(QWidget& window, QSize before) {
    const QRect screen = window.screen()->availableGeometry();
    const QMargins margins = frameAround(window);
    QRect frame = window.geometry().marginsAdded(margins);
    // One that is just being shown may not know its screen yet, and some have no place of their
    // own.
    if (!window.isVisible() || window.isMaximized() || window.isFullScreen() ||
        !screen.intersects(frame))
        return;
    if (frame.width() > before.width()) {
        frame.moveRight(std::min(frame.right(), screen.right()));
        frame.moveLeft(std::max(frame.left(), screen.left()));
    }
    if (frame.height() > before.height()) {
        frame.moveBottom(std::min(frame.bottom(), screen.bottom()));
        frame.moveTop(std::max(frame.top(), screen.top()));
    }
    const QRect place = frame.marginsRemoved(margins);
    if (place != window.geometry()) window.setGeometry(place);
}

/// Has `resize` see to the window's size, and keeps it on its screen when that makes it larger, or
/// when the frame around it comes to be known.
void keepFitting(QWidget& window, const std::function<void()>& resize) {
    new Follower(window, resizing, [&window, resize, frame = QMargins()]() mutable {
        // A window manager that is asked for another size while it places a window may put it where
        // it was asked for first: what the contents need is settled before.
        if (!window.isActiveWindow())
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        const QMargins present = frameAround(window);
        // Before it is active, it may have no frame yet and be on another screen.
        const QMargins known = window.isActiveWindow() ? std::exchange(frame, present) : present;
        const QSize before = window.size().grownBy(known);
        resize();
        keepOnScreen(window, before);
    });
}

} // namespace

void follow(QWidget& widget, std::function<void()> fit) {
    new Follower(widget, {QEvent::FontChange}, std::move(fit));
}

void followRoom(QWidget& window, std::function<void()> fit) {
    new Follower(window, {QEvent::FontChange, QEvent::ScreenChangeInternal}, std::move(fit));
}

int scaled(int points, const QWidget& widget) {
    const int digit = widget.fontMetrics().horizontalAdvance(u'0');
    return static_cast<int>(std::ceil(points * std::max(1.0, digit / usualDigit)));
}

void setFixedWidth(QWidget& widget, int points) {
    follow(widget, [&widget, points] { widget.setFixedWidth(scaled(points, widget)); });
}

int rowHeight(const QWidget& widget, int least, int lines) {
    return std::max(least, lines * widget.fontMetrics().height() + air);
}

void scaleFont(QLabel& label, qreal factor) {
    new FontScale(label, factor);
}

QSize roomFor(const QWidget& window) {
    // What a window manager puts around a window is known only once it has done so.
    constexpr QSize usualFrame{4, 32};
    QSize frame = window.frameSize() - window.size();
    if (!window.windowFlags().testFlag(Qt::FramelessWindowHint))
        frame = frame.expandedTo(usualFrame);
    return window.screen()->availableSize() - frame;
}

void fixSize(QWidget& window, QSize least) {
    keepFitting(window, [&window, least] {
        const QSize size = neededSize(window, least);
        if (size != window.minimumSize() || size != window.maximumSize()) window.setFixedSize(size);
    });
}

void limitSize(QWidget& window, QSize least) {
    keepFitting(window, [&window, least] {
        const QSize size = neededSize(window, least);
        if (size != window.minimumSize()) window.setMinimumSize(size);
    });
}

} // namespace quillabrae::shell::TextSize
