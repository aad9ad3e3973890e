// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/StoreCanvasHost.h"

#include "store/ProjectStore.h"

namespace quillabrae::canvas {

const model::PaintProject* StoreCanvasHost::project() const {
    return m_store.activeProject();
}

void StoreCanvasHost::editProject(const std::function<void(model::PaintProject&)>& edit) {
    m_store.editActiveProject(edit);
}

const model::PaintAppSettings& StoreCanvasHost::settings() const {
    return m_store.settings();
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

void StoreCanvasHost::recordHistory(const QString& title, const QString& symbolName) {
    if (const auto id = m_store.activeProjectID()) m_store.recordHistory(*id, title, symbolName);
}

} // namespace quillabrae::canvas
