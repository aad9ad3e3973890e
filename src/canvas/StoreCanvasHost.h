// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasHost.h"

class QObject;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::canvas {

class CanvasView;

/// The canvas's host over the store's active project. The store outlives it.
class StoreCanvasHost final : public CanvasHost {
public:
    explicit StoreCanvasHost(store::ProjectStore& store) : m_store(store) {}

    const model::PaintProject* project() const override;
    void editProject(const std::function<void(model::PaintProject&)>& edit) override;
    const model::PaintAppSettings& settings() const override;
    QDateTime now() const override;
    void setZoomScale(double zoomScale) override;
    void onViewportChange(QSizeF size) override;
    void onCursorPositionChange(std::optional<model::CanvasPoint> point) override;
    void pickPrimaryColor(const model::ColorValue& color) override;
    void recordHistory(const QString& title, const QString& symbolName) override;

private:
    store::ProjectStore& m_store;
};

/// Tells the canvas of every change of the store that concerns it, as long as `context` lives.
void feedCanvas(CanvasView& view, store::ProjectStore& store, QObject& context);

} // namespace quillabrae::canvas
