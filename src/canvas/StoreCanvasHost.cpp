// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/StoreCanvasHost.h"

#include "canvas/CanvasView.h"
#include "store/ProjectStore.h"

namespace quillabrae::canvas {

const model::PaintProject* StoreCanvasHost::project() const {
    return m_store.activeProject();
}

void StoreCanvasHost::editProject(const std::function<void(model::PaintProject&)>& edit) {
    m_store.editActiveProject(edit);
}

const model::PaintAppSettings& StoreCanvasHost::settings() const {
    if (!m_heldTool) return m_store.settings();
    m_heldSettings = m_store.settings();
    m_heldSettings.selectedTool = *m_heldTool;
    return m_heldSettings;
}

QDateTime StoreCanvasHost::now() const {
    return QDateTime::currentDateTimeUtc();
}

void StoreCanvasHost::setZoomScale(double zoomScale) {
    m_store.editSettings(
        [=](model::PaintAppSettings& settings) { settings.zoomScale = zoomScale; });
}

void StoreCanvasHost::onViewportChange(QSizeF size) {
    m_store.setCanvasViewportSize(size);
}

void StoreCanvasHost::onCursorPositionChange(std::optional<model::CanvasPoint> point) {
    if (!point) return m_store.setCanvasCursorPosition(std::nullopt);
    m_store.setCanvasCursorPosition(QPointF(point->x, point->y));
}

void StoreCanvasHost::pickPrimaryColor(const model::ColorValue& color) {
    m_store.editSettings([&](model::PaintAppSettings& settings) { settings.primaryColor = color; });
}

bool StoreCanvasHost::attempt(const QString& name, const std::function<void()>& edit) {
    return m_store.attempt(name, edit);
}

void StoreCanvasHost::recordHistory(const QString& title, const QString& symbolName) {
    if (const auto id = m_store.activeProjectID()) m_store.recordHistory(*id, title, symbolName);
}

void feedCanvas(CanvasView& view, store::ProjectStore& store, QObject& context) {
    using quillabrae::store::ProjectStore;
    QObject::connect(&store, &ProjectStore::projectChanged, &context, [&](const QUuid& id) {
        if (id == store.activeProjectID()) view.projectChanged();
    });
    QObject::connect(&store, &ProjectStore::activeProjectChanged, &context,
                     [&] { view.activeProjectChanged(); });
    QObject::connect(&store, &ProjectStore::settingsChanged, &context,
                     [&] { view.settingsChanged(); });
    QObject::connect(&store, &ProjectStore::zoomToFitRequested, &context,
                     [&] { view.zoomToFitRequested(store.zoomToFitRequestID()); });
}

} // namespace quillabrae::canvas
