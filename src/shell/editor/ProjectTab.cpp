// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ProjectTab.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/TextSize.h"
#include "shell/controls/VisualPart.h"
#include "shell/looks/Style.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr QSize pictureRoom{40, 30};
constexpr int tabHeight = 40;
constexpr int narrowest = 132;
constexpr int widest = 232;
constexpr int closeExtent = 22;
constexpr int closeIconExtent = 16;
constexpr int unsavedMark = 6;
constexpr int padding = 6;
constexpr int pictureEnd = padding + pictureRoom.width();

} // namespace

ProjectTab::ProjectTab(const QUuid& projectID, QWidget* parent)
    : QAbstractButton(parent),
      m_projectID(projectID),
      m_close(new IconButton({.symbolName = QStringLiteral("xmark"),
                              .title = tr("Close"),
                              .help = {},
                              .extent = closeExtent,
                              .iconExtent = closeIconExtent},
                             this)) {
    setFocusPolicy(Qt::TabFocus);
    TextSize::follow(*this, [this] { setFixedHeight(TextSize::rowHeight(*this, tabHeight)); });
    m_close->setObjectName(QStringLiteral("closeTab"));
    connect(m_close, &QAbstractButton::clicked, this, &ProjectTab::closeRequested);
}

void ProjectTab::setLook(const Look& look) {
    if (look == m_look) return;
    m_look = look;
    setText(look.title);
    setAccessibleName(look.title);
    setAccessibleDescription(look.isUnsaved ? tr("Unsaved") : QString());
    updateGeometry();
    update();
}

QSize ProjectTab::thumbnailRoom() const {
    return (QSizeF(pictureRoom) * devicePixelRatioF()).toSize();
}

void ProjectTab::setThumbnail(const QImage& image) {
    m_thumbnail = QPixmap::fromImage(image);
    m_thumbnail.setDevicePixelRatio(devicePixelRatioF());
    update();
}

QSize ProjectTab::sizeHint() const {
    const int text = fontMetrics().horizontalAdvance(m_look.title);
    const int width = pictureEnd + 8 + text + 8 + unsavedMark + 4 + closeExtent + padding;
    return {std::clamp(width, narrowest, TextSize::scaled(widest, *this)), height()};
}

void ProjectTab::resizeEvent(QResizeEvent*) {
    m_close->setGeometry(visualPart(
        *this,
        {width() - padding - closeExtent, (height() - closeExtent) / 2, closeExtent, closeExtent}));
}

void ProjectTab::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton && rect().contains(event->position().toPoint())) {
        Q_EMIT closeRequested();
        return;
    }
    QAbstractButton::mouseReleaseEvent(event);
}

void ProjectTab::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void ProjectTab::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

void ProjectTab::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFace(painter);
    paintThumbnail(painter);
    paintTitle(painter);
    if (hasFocus()) {
        paintFocusRing(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), palette());
    }
}

void ProjectTab::paintFace(QPainter& painter) const {
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (m_look.isActive) {
        painter.setPen(Style::line(palette()));
        painter.setBrush(Style::raised(palette()));
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(underMouse() ? Style::hover(palette()) : QColor(Qt::transparent));
    }
    painter.drawRoundedRect(face, Style::cornerRadius, Style::cornerRadius);
    if (!m_look.isActive) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Style::accent(palette()));
    painter.drawRoundedRect(QRectF(padding, height() - 2.5, width() - 2 * padding, 2.5), 1.2, 1.2);
}

void ProjectTab::paintThumbnail(QPainter& painter) const {
    if (m_thumbnail.isNull()) return;
    QRectF place(QPointF(), QSizeF(m_thumbnail.size()) / m_thumbnail.devicePixelRatio());
    const QRect room = visualPart(*this, {padding, 0, pictureRoom.width(), height()});
    place.moveCenter(QRectF(room).center());
    place.moveTopLeft(place.topLeft().toPoint());
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(place, Qt::white);
    painter.drawPixmap(place.topLeft(), m_thumbnail);
    painter.setPen(Style::outline(palette()));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    painter.setRenderHint(QPainter::Antialiasing);
}

void ProjectTab::paintTitle(QPainter& painter) const {
    const int end = width() - padding - closeExtent - 4;
    const QRect room =
        visualPart(*this, {pictureEnd + 8, 0, end - unsavedMark - 6 - pictureEnd - 8, height()});
    painter.setPen(m_look.isActive ? palette().color(QPalette::WindowText)
                                   : Style::mutedText(palette()));
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_look.title, Qt::ElideMiddle, room.width()));
    if (!m_look.isUnsaved) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Style::accent(palette()));
    QRectF mark(visualPart(*this, {end - unsavedMark, 0, unsavedMark, unsavedMark}));
    mark.moveTop((height() - unsavedMark) / 2.0);
    painter.drawEllipse(mark);
}

} // namespace quillabrae::shell
