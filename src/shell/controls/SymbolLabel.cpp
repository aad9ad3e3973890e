// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/SymbolLabel.h"

#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"

#include <QEvent>
#include <QPainter>

namespace quillabrae::shell {

SymbolLabel::SymbolLabel(const QString& symbolName, int extent, QWidget* parent)
    : QWidget(parent), m_symbolName(symbolName) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(extent, extent);
}

void SymbolLabel::paintEvent(QPaintEvent*) {
    if (m_icon.isNull()) m_icon = Symbols::icon(m_symbolName);
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1.0 : Style::disabledStrength);
    m_icon.paint(&painter, rect());
}

void SymbolLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_icon = {};
    if (event->type() == QEvent::EnabledChange) update();
    QWidget::changeEvent(event);
}

} // namespace quillabrae::shell
