// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/FloatingPanel.h"

#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace quillabrae::shell {

FloatingPanel::FloatingPanel(const QString& heading, QWidget* parent)
    : QWidget(parent), m_content(new QVBoxLayout(this)) {
    setAccessibleName(heading);
    setCursor(Qt::ArrowCursor);
    m_content->setContentsMargins(Style::grid, 6, Style::grid, Style::grid);
    m_content->setSpacing(Style::grid / 2);
    m_content->addWidget(Labels::heading(heading, this));
}

void FloatingPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Style::line(palette()));
    painter.setBrush(Style::raised(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Style::grid,
                            Style::grid);
}

void FloatingPanel::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void FloatingPanel::wheelEvent(QWheelEvent* event) {
    event->accept();
}

} // namespace quillabrae::shell
