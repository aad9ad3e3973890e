// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/plugins/PluginTile.h"

#include "effects/QuillabraePlugin.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"
#include "shell/plugins/PluginAccent.h"

#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QtMath>

namespace quillabrae::shell {
namespace {

/// The part of the tile that its symbol takes, and the rounding of its corners.
constexpr qreal glyphShare = 0.5;
constexpr qreal cornerShare = 0.22;
constexpr int shade = 130;

/// The symbol's shape in white, as it is drawn for buttons: a theme's larger drawings are pictures.
QPixmap whiteGlyph(const QString& symbolName, int extent, qreal pixelRatio) {
    const int scale = qCeil(extent * pixelRatio / Style::mediumIcon);
    QPixmap glyph =
        Symbols::icon(symbolName).pixmap(QSize(Style::mediumIcon, Style::mediumIcon), scale);
    if (glyph.isNull()) return glyph;
    glyph.setDevicePixelRatio(1.0);
    QPainter painter(&glyph);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(QPoint(), glyph.size()), Qt::white);
    return glyph;
}

} // namespace

PluginTile::PluginTile(const effects::QuillabraePlugin& plugin, int extent, QWidget* parent)
    : QWidget(parent), m_symbolName(plugin.symbolName), m_accent(accentColor(plugin)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(extent, extent);
}

void PluginTile::paintEvent(QPaintEvent*) {
    const int extent = qRound(width() * glyphShare);
    if (m_glyph.isNull() || m_glyphRatio != devicePixelRatio()) {
        m_glyphRatio = devicePixelRatio();
        m_glyph = whiteGlyph(m_symbolName, extent, m_glyphRatio);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground(0.0, 0.0, 0.0, height());
    ground.setColorAt(0.0, m_accent);
    ground.setColorAt(1.0, m_accent.darker(shade));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), width() * cornerShare, width() * cornerShare);
    QRect place(0, 0, extent, extent);
    place.moveCenter(rect().center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, m_glyph);
}

void PluginTile::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_glyph = {};
    QWidget::changeEvent(event);
}

} // namespace quillabrae::shell
