// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayerRow.h"

#include "shell/controls/TextSize.h"
#include "shell/looks/Checker.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"
#include "shell/panels/LayerListModel.h"
#include "shell/panels/RowList.h"

#include <QLineEdit>
#include <QPainter>
#include <QStyle>

namespace quillabrae::shell {
namespace {

constexpr int padding = 6;
constexpr int markExtent = 24;
constexpr double wholeOpacity = 0.995;
constexpr double hiddenStrength = 0.45;
/// What a field has between its edge and its text.
constexpr int fieldEdge = 4;

LayerRowParts partsOf(const QStyleOptionViewItem& option) {
    return {option.rect, option.direction};
}

QRect centeredIcon(const QRect& room) {
    QRect icon(0, 0, Style::smallIcon, Style::smallIcon);
    icon.moveCenter(room.center());
    return icon;
}

bool isVisible(const QModelIndex& index) {
    return index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

RowList::Face faceOf(const QStyleOptionViewItem& option) {
    if (option.state.testFlag(QStyle::State_Selected)) return RowList::Face::chosen;
    return option.state.testFlag(QStyle::State_MouseOver) ? RowList::Face::underPointer
                                                          : RowList::Face::plain;
}

} // namespace

LayerRowParts::LayerRowParts(const QRect& row, Qt::LayoutDirection direction)
    : thumbnail(row.left() + padding,
                row.top() + (row.height() - LayerRow::thumbnailRoom.height()) / 2,
                LayerRow::thumbnailRoom.width(), LayerRow::thumbnailRoom.height()),
      visibility(row.right() + 1 - padding - markExtent,
                 row.top() + (row.height() - markExtent) / 2, markExtent, markExtent) {
    lock = visibility.translated(-markExtent, 0);
    const int left = thumbnail.right() + 1 + Style::grid;
    name = QRect(left, row.top(), lock.left() - left, row.height());
    for (QRect* part : {&thumbnail, &name, &lock, &visibility})
        *part = QStyle::visualRect(direction, row, *part);
}

QSize LayerRow::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), heightIn(*option.widget)};
}

int LayerRow::heightIn(const QWidget& list) {
    constexpr int nameAndOpacity = 2;
    return TextSize::rowHeight(list, height, nameAndOpacity);
}

void LayerRow::forgetIcons() {
    m_visible = {};
    m_hidden = {};
    m_locked = {};
}

const QIcon& LayerRow::icon(QIcon& cached, const char* symbolName) const {
    if (cached.isNull()) cached = Symbols::icon(QString::fromLatin1(symbolName));
    return cached;
}

void LayerRow::paint(QPainter* painter, const QStyleOptionViewItem& option,
                     const QModelIndex& index) const {
    const QRectF face = QRectF(option.rect).adjusted(0.5, 1.5, -0.5, -1.5);
    RowList::paintFace(*painter, face, faceOf(option), option.palette);
    paintThumbnail(*painter, option, index);
    paintText(*painter, option, index);
    paintMarks(*painter, option, index);
}

void LayerRow::paintThumbnail(QPainter& painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    const QRect room = partsOf(option).thumbnail;
    const QSizeF canvas = index.data(LayerListModel::canvasSizeRole).toSizeF();
    QRect place(
        QPoint(),
        canvas.scaled(QSizeF(room.size()), Qt::KeepAspectRatio).toSize().expandedTo({1, 1}));
    place.moveCenter(room.center());
    painter.setOpacity(isVisible(index) ? 1.0 : hiddenStrength);
    painter.fillRect(place, Style::paper(option.palette));
    paintLabelChecker(painter, place, option.palette);
    const QImage picture = index.data(Qt::DecorationRole).value<QImage>();
    if (!picture.isNull()) painter.drawImage(place, picture);
    painter.setOpacity(1.0);
    painter.setPen(Style::outline(option.palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.adjusted(-1, -1, 0, 0));
}

void LayerRow::paintText(QPainter& painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const QRect room = partsOf(option).name;
    const QFontMetrics& metrics = option.fontMetrics;
    const double opacity = index.data(LayerListModel::opacityRole).toDouble();
    const bool isWhole = opacity > wholeOpacity;
    const int lines = isWhole ? metrics.height() : 2 * metrics.height();
    QRect line(room.left(), room.top() + (room.height() - lines) / 2, room.width(),
               metrics.height());
    painter.setPen(isVisible(index) ? option.palette.color(QPalette::WindowText)
                                    : Style::mutedText(option.palette));
    painter.drawText(line, Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(index.data().toString(), Qt::ElideRight, line.width()));
    if (isWhole) return;
    line.translate(0, metrics.height());
    painter.setPen(Style::mutedText(option.palette));
    painter.drawText(line, Qt::AlignVCenter | Qt::TextSingleLine,
                     QStringLiteral("%1 %").arg(qRound(opacity * 100.0)));
}

void LayerRow::paintMarks(QPainter& painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const LayerRowParts parts = partsOf(option);
    if (index.data(LayerListModel::isLockedRole).toBool())
        icon(m_locked, "lock.fill").paint(&painter, centeredIcon(parts.lock));
    const QIcon& eye = isVisible(index) ? icon(m_visible, "eye") : icon(m_hidden, "eye.slash");
    eye.paint(&painter, centeredIcon(parts.visibility));
}

QWidget* LayerRow::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                const QModelIndex&) const {
    auto* editor = new QLineEdit(parent);
    editor->setAccessibleName(tr("Layer name"));
    return editor;
}

void LayerRow::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                    const QModelIndex&) const {
    const LayerRowParts parts = partsOf(option);
    QRect place = parts.name.united(parts.lock);
    place.translate(option.direction == Qt::RightToLeft ? fieldEdge : -fieldEdge, 0);
    place.setHeight(editor->sizeHint().height());
    place.moveTop(option.rect.top() + (option.rect.height() - place.height()) / 2);
    editor->setGeometry(place);
}

} // namespace quillabrae::shell
