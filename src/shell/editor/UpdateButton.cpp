// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/UpdateButton.h"

#include "services/AppUpdateService.h"
#include "shell/controls/FocusRing.h"
#include "shell/controls/VisualPart.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"

#include <QEvent>
#include <QPainter>

namespace quillabrae::shell {
namespace {

using Kind = services::AppUpdateState::Kind;

constexpr int extent = 32;
constexpr int padding = (extent - Style::smallIcon) / 2;
constexpr int gap = 6;
constexpr double radius = 5;
constexpr double disabledOpacity = 0.55;

} // namespace

UpdateButton::UpdateButton(services::AppUpdateService& updates, QWidget* parent)
    : QAbstractButton(parent),
      m_updates(updates),
      m_tooltip(new HoverTooltip(this, {}, HoverTooltipPlacement::below)) {
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, &m_updates,
            &services::AppUpdateService::checkForUpdates);
    connect(&m_updates, &services::AppUpdateService::stateChanged, this, &UpdateButton::follow);
    follow();
}

void UpdateButton::follow() {
    const services::AppUpdateState& state = m_updates.state();
    setText(state.buttonTitle());
    m_tooltip->setText({state.buttonTitle(), state.helpText()});
    setEnabled(!state.isActionDisabled());
    updateGeometry();
    update();
}

bool UpdateButton::showsTitle() const {
    const Kind kind = m_updates.state().kind;
    return kind != Kind::idle && kind != Kind::failed;
}

QSize UpdateButton::sizeHint() const {
    if (!showsTitle()) return {extent, extent};
    return {
        padding + Style::smallIcon + gap + fontMetrics().horizontalAdvance(text()) + padding + 2,
        std::max(extent, fontMetrics().height())};
}

QColor UpdateButton::faceColor() const {
    if (isDown()) return Style::pressed(palette());
    if (m_updates.state().kind == Kind::available) return Style::accentWash(palette());
    return isEnabled() && underMouse() ? Style::hover(palette()) : QColor(Qt::transparent);
}

void UpdateButton::paintEvent(QPaintEvent*) {
    if (m_icon.isNull()) m_icon = Symbols::icon(QStringLiteral("arrow.down.circle.fill"));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const bool standsOut = m_updates.state().kind == Kind::available;
    painter.setBrush(faceColor());
    painter.setPen(standsOut ? QPen(Style::accent(palette())) : QPen(Qt::NoPen));
    painter.drawRoundedRect(face, radius, radius);
    painter.setOpacity(isEnabled() ? 1.0 : disabledOpacity);
    const QRect iconRect(padding, (height() - Style::smallIcon) / 2, Style::smallIcon,
                         Style::smallIcon);
    m_icon.paint(&painter, visualPart(*this, iconRect));
    if (showsTitle()) {
        painter.setPen(palette().color(QPalette::Active, QPalette::WindowText));
        painter.drawText(
            visualPart(*this, rect().adjusted(iconRect.right() + 1 + gap, 0, -padding, 0)),
            Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text());
    }
    painter.setOpacity(1.0);
    if (hasFocus()) paintFocusRing(painter, face, palette());
}

void UpdateButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_icon = {};
    if (event->type() == QEvent::FontChange) updateGeometry();
    QAbstractButton::changeEvent(event);
}

void UpdateButton::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void UpdateButton::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace quillabrae::shell
