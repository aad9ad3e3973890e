// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/TourPicture.h"

#include "shell/looks/Style.h"

#include <QEvent>
#include <QPainter>

namespace quillabrae::shell {

TourPicture::TourPicture(const QString& name, const QString& text, QSize room, QWidget* parent)
    : QLabel(parent), m_name(name), m_room(room) {
    setAccessibleName(text);
}

void TourPicture::load() {
    const bool isDark = Style::schemeOf(palette()) == ColorScheme::dark;
    const QPixmap picture(
        QStringLiteral(":/tour/%1/%2.png")
            .arg(isDark ? QStringLiteral("dark") : QStringLiteral("light"), m_name));
    const qreal ratio = devicePixelRatioF();
    QPixmap fitted = picture.scaled((QSizeF(m_room) * ratio).toSize(), Qt::KeepAspectRatio,
                                    Qt::SmoothTransformation);
    fitted.setDevicePixelRatio(ratio);
    setPixmap(fitted);
    setFixedSize(fitted.deviceIndependentSize().toSize());
}

void TourPicture::showEvent(QShowEvent* event) {
    if (pixmap(Qt::ReturnByValue).isNull()) load();
    QLabel::showEvent(event);
}

void TourPicture::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange && !pixmap(Qt::ReturnByValue).isNull()) load();
    QLabel::changeEvent(event);
}

void TourPicture::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setPen(Style::line(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace quillabrae::shell
