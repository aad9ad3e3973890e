// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/Divider.h"

#include "shell/looks/Style.h"

#include <QPainter>

namespace quillabrae::shell {
namespace {

constexpr int lineHeight = 20;

} // namespace

Divider::Divider(QWidget* parent) : QWidget(parent) {
    setFixedSize(Style::grid + 1, lineHeight);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(width() / 2, 0, 1, height()), Style::line(palette()));
}

} // namespace quillabrae::shell
