// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayerList.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/looks/Style.h"
#include "shell/panels/LayerListModel.h"
#include "shell/panels/LayerRow.h"
#include "shell/panels/RowList.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace quillabrae::shell {
namespace {

constexpr double springResponse = 0.5;
constexpr double springDamping = 0.85;
constexpr int frameTime = 16;
/// How far beyond the list's edge the pointer scrolls it by one point a frame.
constexpr int scrollReach = 8;

} // namespace

LayerList::LayerList(store::ProjectStore& store, std::function<void()> configureLayer,
                     QWidget* parent)
    : QListView(parent),
      m_store(store),
      m_configureLayer(std::move(configureLayer)),
      m_model(new LayerListModel(store, this)),
      m_rowLook(new LayerRow(this)),
      m_reorder(store) {
    setAccessibleName(tr("Layers"));
    RowList::prepare(*this);
    setModel(m_model);
    setItemDelegate(m_rowLook);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    auto* tooltip = new HoverTooltip(viewport(), {}, HoverTooltipPlacement::below);
    tooltip->setParts([this](QPoint at) -> std::optional<HoverTooltipPart> {
        const QModelIndex index = indexAt(at);
        if (!index.isValid()) return std::nullopt;
        const LayerRowParts parts = partsOf(index);
        if (parts.visibility.contains(at)) {
            return HoverTooltipPart{parts.visibility, {tr("Visible"), {}}};
        }
        if (parts.lock.contains(at) && index.data(LayerListModel::isLockedRole).toBool()) {
            return HoverTooltipPart{parts.lock, {tr("Locked"), tr("Locked layer")}};
        }
        return std::nullopt;
    });
    connect(m_model, &LayerListModel::selectedRowChanged, this, &LayerList::showSelection);
    showSelection();
}

void LayerList::showSelection() {
    const auto row = m_model->selectedRow();
    if (!row) return selectionModel()->clear();
    const QModelIndex index = m_model->index(*row);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    if (!isReordering()) scrollTo(index);
}

void LayerList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    // By the arrow keys; the store's own choice comes here too and changes nothing.
    if (current.isValid() && m_model->selectedRow() != current.row())
        m_model->select(current.row());
}

/// What is selected is the store's to say.
QItemSelectionModel::SelectionFlags LayerList::selectionCommand(const QModelIndex&,
                                                                const QEvent*) const {
    return QItemSelectionModel::NoUpdate;
}

void LayerList::measureThumbnails() {
    m_model->setThumbnailRoom((QSizeF(LayerRow::thumbnailRoom) * devicePixelRatioF()).toSize());
}

void LayerList::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    measureThumbnails();
}

void LayerList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_rowLook->forgetIcons();
    QListView::changeEvent(event);
}

bool LayerList::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Paint) measureThumbnails();
    return QListView::viewportEvent(event);
}

// Names

void LayerList::editName(int row) {
    m_focusBeforeEditing = QApplication::focusWidget();
    edit(m_model->index(row));
}

void LayerList::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const bool hadFocus = editor->hasFocus();
    QListView::closeEditor(editor, hint);
    if (hadFocus && m_focusBeforeEditing) m_focusBeforeEditing->setFocus();
    m_focusBeforeEditing.clear();
}

bool LayerList::event(QEvent* event) {
    // No command may come between a drag and its drop.
    if (event->type() == QEvent::ShortcutOverride && isReordering()) {
        event->accept();
        return true;
    }
    return QListView::event(event);
}

void LayerList::keyPressEvent(QKeyEvent* event) {
    if (isReordering()) {
        if (event->key() == Qt::Key_Escape) {
            const auto places = restingPlaces();
            m_reorder.cancel();
            endDrag();
            springFrom(places);
        }
        return;
    }
    // What the name's field has no use for.
    if (state() == QAbstractItemView::EditingState) return;
    const int row = currentIndex().row();
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier)
        return m_model->toggleVisibility(row);
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && m_configureLayer)
        return m_configureLayer();
    QListView::keyPressEvent(event);
}

// The pointer

void LayerList::mousePressEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const QModelIndex index = indexAt(at);
    if (event->button() != Qt::LeftButton || !index.isValid()) return;
    if (partsOf(index).visibility.contains(at)) {
        m_pressedEye = index.row();
        return;
    }
    m_pressedAt = at;
    m_grip = at.y() - visualRect(index).top();
    m_model->select(index.row());
}

bool LayerList::startsDrag(QPoint at) const {
    return m_pressedAt && !isReordering() &&
           (at - *m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
}

void LayerList::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (startsDrag(at)) {
        if (const auto row = m_model->selectedRow()) {
            m_reorder.start(*m_model->layerID(*row));
            grabKeyboard();
            m_clock.start();
            m_frames.start(frameTime, this);
        }
    }
    if (isReordering()) return dragTo(at.y());
    if (event->buttons() == Qt::NoButton) QListView::mouseMoveEvent(event);
}

void LayerList::dragTo(int y) {
    m_pointerY = y;
    enterRowAt(y);
    viewport()->update();
}

void LayerList::enterRowAt(int y) {
    if (m_model->rowCount() == 0) return;
    const int position = (y + verticalOffset()) / rowHeight();
    const int row = std::clamp(position, 0, m_model->rowCount() - 1);
    const auto places = restingPlaces();
    if (m_reorder.dropEntered(*m_model->layerID(row))) springFrom(places);
}

void LayerList::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const QPoint at = event->position().toPoint();
    if (isReordering()) {
        const auto dragged = m_reorder.draggingLayerID();
        auto places = restingPlaces();
        places[*dragged] = m_pointerY - m_grip;
        m_reorder.performDrop();
        endDrag();
        return springFrom(places);
    }
    m_pressedAt.reset();
    const auto pressed = std::exchange(m_pressedEye, std::nullopt);
    const QModelIndex index = indexAt(at);
    if (pressed && index.row() == *pressed && partsOf(index).visibility.contains(at)) {
        m_model->toggleVisibility(*pressed);
    }
}

void LayerList::endDrag() {
    releaseKeyboard();
    m_pressedAt.reset();
    viewport()->update();
}

void LayerList::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const QModelIndex index = indexAt(at);
    if (!index.isValid() || event->button() != Qt::LeftButton) return;
    const LayerRowParts parts = partsOf(index);
    // Two quick presses on the eye are two presses.
    if (parts.visibility.contains(at)) return mousePressEvent(event);
    m_model->select(index.row());
    if (parts.name.contains(at))
        editName(index.row());
    else if (m_configureLayer)
        m_configureLayer();
}

// Springs

QHash<QUuid, int> LayerList::restingPlaces() const {
    QHash<QUuid, int> places;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        places.insert(*m_model->layerID(row), row * rowHeight() - verticalOffset());
    }
    return places;
}

void LayerList::springFrom(const QHash<QUuid, int>& places) {
    const auto now = restingPlaces();
    for (auto place = now.begin(); place != now.end(); ++place) {
        const int distance = places.value(place.key(), *place) - *place;
        if (distance == 0 || place.key() == m_reorder.draggingLayerID()) continue;
        if (!m_springs.contains(place.key()))
            m_springs.insert(place.key(), Spring(springResponse, springDamping));
        m_springs[place.key()].displace(distance);
    }
    if (m_frames.isActive()) return;
    m_clock.start();
    m_frames.start(frameTime, this);
}

void LayerList::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_frames.timerId()) return QListView::timerEvent(event);
    advanceSprings();
    if (isReordering()) {
        const int above = std::max(0, -m_pointerY);
        const int below = std::max(0, m_pointerY - viewport()->height());
        QScrollBar* bar = verticalScrollBar();
        bar->setValue(bar->value() + (below - above + scrollReach - 1) / scrollReach);
        if (above + below > 0) enterRowAt(m_pointerY);
    } else if (m_springs.isEmpty()) {
        m_frames.stop();
    }
    viewport()->update();
}

void LayerList::advanceSprings() {
    constexpr double millisecondsPerSecond = 1000.0;
    const double seconds = static_cast<double>(m_clock.restart()) / millisecondsPerSecond;
    for (Spring& spring : m_springs) spring.advance(seconds);
    m_springs.removeIf([](auto spring) { return spring.value().settle(); });
}

// Painting

LayerRowParts LayerList::partsOf(const QModelIndex& index) const {
    return {visualRect(index), layoutDirection()};
}

int LayerList::rowHeight() const {
    return LayerRow::heightIn(*this);
}

int LayerList::rowTop(int row) const {
    const QUuid id = *m_model->layerID(row);
    const auto spring = m_springs.constFind(id);
    const double displaced = spring == m_springs.constEnd() ? 0.0 : spring->distance();
    return row * rowHeight() - verticalOffset() + qRound(displaced);
}

void LayerList::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const auto dragged = m_reorder.draggingLayerID();
    std::optional<int> lifted;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->layerID(row) == dragged) {
            lifted = row;
            continue;
        }
        const int top = rowTop(row);
        if (event->rect().intersects(QRect(0, top, viewport()->width(), rowHeight())))
            paintRow(painter, row, top);
    }
    if (!lifted) return;
    paintTarget(painter, visualRect(m_model->index(*lifted)));
    const int lowest = std::max(0, viewport()->height() - rowHeight());
    paintRow(painter, *lifted, std::clamp(m_pointerY - m_grip, 0, lowest));
}

/// Where the dragged layer will be when it is dropped.
void LayerList::paintTarget(QPainter& painter, const QRect& row) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Style::accent(palette()), 1.5, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(row).adjusted(1.5, 2.5, -1.5, -2.5), Style::cornerRadius,
                            Style::cornerRadius);
    painter.restore();
}

void LayerList::paintRow(QPainter& painter, int row, int top) const {
    const QModelIndex index = m_model->index(row);
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = QRect(0, top, viewport()->width(), rowHeight());
    const bool isLifted = m_model->layerID(row) == m_reorder.draggingLayerID();
    if (selectionModel()->isSelected(index)) option.state |= QStyle::State_Selected;
    option.state.setFlag(QStyle::State_MouseOver,
                         !isReordering() && viewport()->underMouse() &&
                             option.rect.contains(viewport()->mapFromGlobal(QCursor::pos())));
    painter.save();
    if (isLifted) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Style::raised(palette()));
        painter.drawRoundedRect(QRectF(option.rect).adjusted(0, 1, 0, -1), Style::cornerRadius,
                                Style::cornerRadius);
    }
    m_rowLook->paint(&painter, option, index);
    if (hasFocus() && index == currentIndex())
        paintFocusRing(painter, QRectF(option.rect).adjusted(0.5, 1.5, -0.5, -1.5), palette());
    painter.restore();
}

} // namespace quillabrae::shell
