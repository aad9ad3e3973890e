// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/FloatingPanel.h"

#include "shell/controls/BodyScroller.h"
#include "shell/controls/Card.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr int headerHeight = 20;
constexpr int headerTop = 4;
constexpr int headerBottom = 4;
constexpr int foldExtent = 20;

ScrolledBody* bodyOf(QVBoxLayout* content) {
    auto* body = new ScrolledBody;
    body->setLayout(content);
    return body;
}

QString foldSymbol(bool isCollapsed) {
    return isCollapsed ? QStringLiteral("chevron.right") : QStringLiteral("chevron.down");
}

} // namespace

FloatingPanel::FloatingPanel(const QString& heading, QWidget* parent)
    : QWidget(parent),
      m_heading(heading),
      m_fold(new IconButton({.symbolName = foldSymbol(false),
                             .title = tr("Collapse %1").arg(heading),
                             .help = tr("Drag the heading to move the panel."),
                             .extent = foldExtent,
                             .iconExtent = Style::smallIcon},
                            this)),
      m_header(new QWidget(this)),
      m_content(new QVBoxLayout),
      m_body(new BodyScroller(bodyOf(m_content), this)) {
    setAccessibleName(heading);
    setCursor(Qt::ArrowCursor);
    TextSize::follow(
        *m_header, [this] { m_header->setFixedHeight(TextSize::scaled(headerHeight, *m_header)); });
    auto* header = new QHBoxLayout(m_header);
    header->setContentsMargins(0, 0, 0, 0);
    header->setSpacing(0);
    header->addWidget(Labels::heading(heading, m_header));
    header->addStretch();
    header->addWidget(m_fold);
    m_header->setCursor(Qt::OpenHandCursor);
    m_fold->setCursor(Qt::ArrowCursor);

    m_content->setContentsMargins(0, 0, 0, 0);
    m_content->setSpacing(Style::grid / 2);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::grid, headerTop, Style::grid, headerBottom);
    layout->setSpacing(headerBottom);
    layout->addWidget(m_header);
    layout->addWidget(m_body, 1);
    connect(m_fold, &QAbstractButton::clicked, this, [this] { setCollapsed(!isCollapsed()); });
}

void FloatingPanel::setCollapsed(bool isCollapsed) {
    if (isCollapsed == m_body->isHidden()) return;
    m_body->setHidden(isCollapsed);
    m_fold->setSymbolName(foldSymbol(isCollapsed));
    m_fold->setAccessibleName((isCollapsed ? tr("Expand %1") : tr("Collapse %1")).arg(m_heading));
    layout()->activate();
    Q_EMIT sizeChanged();
}

void FloatingPanel::fitContent() {
    m_content->activate();
    m_body->updateGeometry();
    layout()->activate();
    Q_EMIT sizeChanged();
}

void FloatingPanel::setExpandedHeight(int height) {
    m_expandedHeight = height;
}

QSize FloatingPanel::sizeHint() const {
    const QSize hint = QWidget::sizeHint();
    if (isCollapsed()) {
        const QMargins margins = layout()->contentsMargins();
        const int width =
            std::max(hint.width(), m_body->sizeHint().width() + margins.left() + margins.right());
        return {width, headerTop + m_header->height() + headerBottom};
    }
    const int height = hint.height() + Style::grid - headerBottom;
    return {hint.width(), m_expandedHeight.value_or(height)};
}

bool FloatingPanel::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) Q_EMIT sizeChanged();
    return QWidget::event(event);
}

bool FloatingPanel::isOnHeading(QPoint at) const {
    return at.y() < m_header->geometry().bottom() + 1;
}

void FloatingPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintCard(painter, rect(), palette());
}

void FloatingPanel::mousePressEvent(QMouseEvent* event) {
    raise();
    const QPoint at = event->position().toPoint();
    if (event->button() != Qt::LeftButton || !isOnHeading(at)) return;
    m_grip = at;
    m_header->setCursor(Qt::ClosedHandCursor);
}

void FloatingPanel::mouseMoveEvent(QMouseEvent* event) {
    if (m_grip) Q_EMIT moveRequested(mapToParent(event->position().toPoint()) - *m_grip);
}

void FloatingPanel::mouseReleaseEvent(QMouseEvent*) {
    m_grip.reset();
    m_header->setCursor(Qt::OpenHandCursor);
}

void FloatingPanel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (isOnHeading(event->position().toPoint())) setCollapsed(!isCollapsed());
}

void FloatingPanel::wheelEvent(QWheelEvent* event) {
    event->accept();
}

} // namespace quillabrae::shell
