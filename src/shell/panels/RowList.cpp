// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/RowList.h"

#include "shell/looks/Style.h"

#include <QListView>
#include <QPainter>

namespace quillabrae::shell::RowList {
namespace {

/// So that a list in a low window still shows a row.
constexpr int leastHeight = 48;

} // namespace

void prepare(QListView& list) {
    list.setFrameShape(QFrame::NoFrame);
    list.setUniformItemSizes(true);
    list.setSelectionMode(QAbstractItemView::SingleSelection);
    list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.setFocusPolicy(Qt::TabFocus);
    list.setMouseTracking(true);
    list.setMinimumHeight(leastHeight);
    list.viewport()->setAutoFillBackground(false);
}

void paintFace(QPainter& painter, const QRectF& rect, Face face, const QPalette& palette) {
    if (face == Face::plain) return;
    const bool isChosen = face == Face::chosen;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isChosen ? QPen(Style::accent(palette)) : QPen(Qt::NoPen));
    painter.setBrush(isChosen ? Style::accentWash(palette) : Style::hover(palette));
    painter.drawRoundedRect(rect, Style::cornerRadius, Style::cornerRadius);
    painter.restore();
}

} // namespace quillabrae::shell::RowList
