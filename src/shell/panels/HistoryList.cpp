// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/HistoryList.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"
#include "shell/panels/HistoryListModel.h"
#include "shell/panels/RowList.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <utility>

namespace quillabrae::shell {
namespace {

constexpr int padding = 6;
constexpr double undoneStrength = 0.55;
constexpr double undoneStarkStrength = 0.8;

double undoneIconStrength(const QPalette& palette) {
    return Style::contrastOf(palette) == Contrast::high ? undoneStarkStrength : undoneStrength;
}

RowList::Face faceOf(const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (index.data(HistoryListModel::isSelectedRole).toBool()) return RowList::Face::chosen;
    return option.state.testFlag(QStyle::State_MouseOver) ? RowList::Face::underPointer
                                                          : RowList::Face::plain;
}

} // namespace

QSize HistoryRow::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), TextSize::rowHeight(*option.widget, height)};
}

void HistoryRow::paint(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const bool isFuture = index.data(HistoryListModel::isFutureRole).toBool();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    RowList::paintFace(*painter, face, faceOf(option, index), option.palette);

    const QString symbolName = index.data(HistoryListModel::symbolNameRole).toString();
    QIcon& icon = m_icons[symbolName];
    if (icon.isNull()) icon = Symbols::icon(symbolName);
    QRect place(option.rect.left() + padding, 0, Style::smallIcon, Style::smallIcon);
    place.moveTop(option.rect.top() + (option.rect.height() - place.height()) / 2);
    painter->setOpacity(isFuture ? undoneIconStrength(option.palette) : 1.0);
    icon.paint(painter, QStyle::visualRect(option.direction, option.rect, place));
    painter->setOpacity(1.0);

    const QRect text = QStyle::visualRect(
        option.direction, option.rect,
        option.rect.adjusted(padding + Style::smallIcon + Style::grid, 0, -padding, 0));
    painter->setPen(isFuture ? Style::mutedText(option.palette)
                             : option.palette.color(QPalette::WindowText));
    painter->drawText(
        text, Qt::AlignVCenter | Qt::TextSingleLine,
        option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, text.width()));
    if (option.state.testFlag(QStyle::State_HasFocus))
        paintFocusRing(*painter, face, option.palette);
    painter->restore();
}

HistoryList::HistoryList(store::ProjectStore& store, QWidget* parent)
    : QListView(parent),
      m_model(new HistoryListModel(store, this)),
      m_rowLook(new HistoryRow(this)) {
    setAccessibleName(tr("History"));
    RowList::prepare(*this);
    setModel(m_model);
    setItemDelegate(m_rowLook);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(m_model, &HistoryListModel::selectedRowChanged, this, &HistoryList::showSelection);
    showSelection();
}

void HistoryList::showSelection() {
    const QModelIndex index = m_model->index(m_model->selectedRow());
    if (!index.isValid()) return selectionModel()->clear();
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

/// What is selected is the store's to say.
QItemSelectionModel::SelectionFlags HistoryList::selectionCommand(const QModelIndex&,
                                                                  const QEvent*) const {
    return QItemSelectionModel::NoUpdate;
}

void HistoryList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_rowLook->forgetIcons();
    QListView::changeEvent(event);
}

void HistoryList::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_pressedRow = indexAt(event->position().toPoint()).row();
}

void HistoryList::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) QListView::mouseMoveEvent(event);
}

void HistoryList::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const int pressed = std::exchange(m_pressedRow, -1);
    if (pressed == indexAt(event->position().toPoint()).row()) m_model->restore(pressed);
}

void HistoryList::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void HistoryList::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            return m_model->restore(currentIndex().row());
        default:
            QListView::keyPressEvent(event);
    }
}

} // namespace quillabrae::shell
