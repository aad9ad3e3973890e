// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/welcome/ActionRow.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/looks/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace quillabrae::shell {
namespace {

constexpr int padding = 12;

} // namespace

ActionRow::ActionRow(const Face& face, QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setText(face.heading);
    const QString name = face.link.isEmpty() ? face.heading : face.link;
    new HoverTooltip(this, {name, face.help}, HoverTooltipPlacement::below);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(padding);
    row->addWidget(new SymbolLabel(face.symbolName, Style::mediumIcon, this), 0, Qt::AlignTop);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    addText(face, *lines);
    row->addLayout(lines, 1);
}

void ActionRow::addText(const Face& face, QVBoxLayout& lines) {
    QLabel* heading = Labels::title(face.heading, 1.0, this);
    QLabel* text = Labels::muted(face.text, this);
    text->setWordWrap(true);
    lines.addWidget(heading);
    lines.addWidget(text);
    if (!face.link.isEmpty()) {
        QLabel* link = Labels::body(face.link, this);
        link->setForegroundRole(QPalette::Link);
        lines.addWidget(link);
    }
    for (QLabel* label : findChildren<QLabel*>()) {
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
}

void ActionRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Style::line(palette()));
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(face, Style::grid, Style::grid);
    if (isDown() || underMouse()) {
        painter.setBrush(isDown() ? Style::pressed(palette()) : Style::hover(palette()));
        painter.drawRoundedRect(face, Style::grid, Style::grid);
    }
    if (hasFocus()) paintFocusRing(painter, face, palette());
}

void ActionRow::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void ActionRow::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace quillabrae::shell
