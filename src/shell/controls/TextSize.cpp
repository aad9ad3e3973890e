// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/TextSize.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QPointer>

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

/// Runs something after each event of certain types, as long as the widget lives.
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
QSize neededSize(const QWidget& window, QSize least) {
    QLayout* layout = window.layout();
    if (layout == nullptr) return least;
    QSize size = layout->totalMinimumSize().expandedTo(least);
    if (layout->hasHeightForWidth())
        size.setHeight(std::max(least.height(), layout->totalMinimumHeightForWidth(size.width())));
    return size;
}

} // namespace

void follow(QWidget& widget, std::function<void()> fit) {
    new Follower(widget, {QEvent::FontChange}, std::move(fit));
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

void fixSize(QWidget& window, QSize least) {
    new Follower(window, {QEvent::LayoutRequest, QEvent::Show}, [&window, least] {
        const QSize size = neededSize(window, least);
        if (size != window.minimumSize() || size != window.maximumSize()) window.setFixedSize(size);
    });
}

void limitSize(QWidget& window, QSize least) {
    new Follower(window, {QEvent::LayoutRequest, QEvent::Show}, [&window, least] {
        const QSize size = neededSize(window, least);
        if (size != window.minimumSize()) window.setMinimumSize(size);
    });
}

} // namespace quillabrae::shell::TextSize
