// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/StatusBar.h"

#include "shell/controls/ElidedLabel.h"
#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"
#include "store/ProjectStore.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr int barHeight = 28;

QString wholeNumber(double value) {
    return QString::number(static_cast<qint64>(std::floor(value)));
}

/// With a decimal where a whole number would say little.
QString percent(double scale) {
    constexpr double fine = 0.2;
    return QString::number(scale * 100.0, 'f', scale < fine ? 1 : 0) + QStringLiteral(" %");
}

} // namespace

StatusBar::StatusBar(const store::ProjectStore& store, QWidget* parent)
    : QWidget(parent),
      m_store(store),
      m_message(new ElidedLabel(this)),
      m_position(Labels::muted({}, this)),
      m_zoom(Labels::muted({}, this)) {
    TextSize::follow(*this, [this] { setFixedHeight(TextSize::rowHeight(*this, barHeight)); });
    m_message->setObjectName(QStringLiteral("statusMessage"));
    m_message->setAccessibleDescription(tr("Status"));
    m_position->setObjectName(QStringLiteral("cursorPosition"));
    m_position->setAccessibleDescription(tr("Pointer position"));
    m_zoom->setObjectName(QStringLiteral("zoom"));
    m_zoom->setAccessibleDescription(tr("Zoom"));
    m_zoom->setAlignment(Labels::trailing() | Qt::AlignVCenter);
    // As wide as it ever is, so that the position beside it stays where it is.
    TextSize::follow(*m_zoom, [this] {
        m_zoom->setMinimumWidth(
            m_zoom->fontMetrics().horizontalAdvance(percent(model::maximumZoomScale)));
    });
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 1, 12, 0);
    layout->setSpacing(2 * Style::grid);
    layout->addWidget(m_message, 1);
    layout->addWidget(m_position);
    layout->addWidget(m_zoom);

    using store::ProjectStore;
    connect(&m_store, &ProjectStore::statusMessageChanged, this, &StatusBar::showMessage);
    connect(&m_store, &ProjectStore::canvasCursorPositionChanged, this, &StatusBar::showPosition);
    connect(&m_store, &ProjectStore::settingsChanged, this, &StatusBar::showZoom);
    showMessage();
    showPosition();
    showZoom();
}

void StatusBar::showMessage() {
    m_message->setText(m_store.statusMessage());
}

void StatusBar::showPosition() {
    const auto position = m_store.canvasCursorPosition();
    m_position->setText(position.has_value() ? wholeNumber(position->x) + QStringLiteral(" x ") +
                                                   wholeNumber(position->y)
                                             : QString());
}

void StatusBar::showZoom() {
    m_zoom->setText(percent(m_store.settings().zoomScale));
}

void StatusBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), Style::line(palette()));
}

} // namespace quillabrae::shell
