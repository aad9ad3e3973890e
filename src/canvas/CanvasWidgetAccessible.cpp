// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidgetAccessible.h"

#include "canvas/CanvasDescription.h"
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "store/ProjectStore.h"

#include <QTimerEvent>

#include <utility>

namespace quillabrae::canvas {
namespace {

/// How long a description has to rest: a pointer in motion is not followed with words.
constexpr int restMilliseconds = 120;

QAccessibleInterface* make(const QString&, QObject* object) {
    auto* canvas = qobject_cast<CanvasWidget*>(object);
    // Qt's cache of accessible interfaces owns what is returned.
    return canvas == nullptr ? nullptr : new CanvasWidgetAccessible(canvas);
}

} // namespace

CanvasWidgetAccessible::CanvasWidgetAccessible(CanvasWidget* canvas)
    : QAccessibleWidget(canvas, QAccessible::Canvas) {}

CanvasWidget* CanvasWidgetAccessible::canvas() const {
    return qobject_cast<CanvasWidget*>(object());
}

QString CanvasWidgetAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Description && canvas() != nullptr)
        return canvasDescription(canvas()->view());
    return QAccessibleWidget::text(kind);
}

void CanvasWidgetAccessible::install() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(make);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

CanvasAnnouncer::CanvasAnnouncer(CanvasWidget& canvas, const store::ProjectStore& store)
    : QObject(&canvas), m_canvas(canvas) {
    using quillabrae::store::ProjectStore;
    for (const auto changed : {&ProjectStore::settingsChanged, &ProjectStore::activeProjectChanged,
                               &ProjectStore::canvasCursorPositionChanged}) {
        connect(&store, changed, this, &CanvasAnnouncer::mayHaveChanged);
    }
    connect(&store, &ProjectStore::projectChanged, this, &CanvasAnnouncer::mayHaveChanged);
    QAccessible::installActivationObserver(this);
}

CanvasAnnouncer::~CanvasAnnouncer() {
    QAccessible::removeActivationObserver(this);
}

void CanvasAnnouncer::mayHaveChanged() {
    if (m_isActive) m_rest.start(restMilliseconds, this);
}

void CanvasAnnouncer::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_rest.timerId()) return QObject::timerEvent(event);
    m_rest.stop();
    const QString description = canvasDescription(m_canvas.view());
    if (std::exchange(m_description, description) == description) return;
    Q_EMIT announced(description);
    QAccessibleEvent changed(&m_canvas, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}

} // namespace quillabrae::canvas
