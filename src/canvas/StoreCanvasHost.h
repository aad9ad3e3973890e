// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasHost.h"
#include "model/PaintTool.h"

#include <optional>

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
    bool attempt(const QString& name, const std::function<void()>& edit) override;
    void recordHistory(const QString& title, const QString& symbolName) override;

    /// Uses that tool instead of the chosen one, for as long as it is set.
    void setHeldTool(std::optional<model::PaintTool> tool) { m_heldTool = tool; }

private:
    store::ProjectStore& m_store;
    std::optional<model::PaintTool> m_heldTool;
    /// The store's, with the held tool.
    mutable model::PaintAppSettings m_heldSettings;
};

/// Tells the canvas of every change of the store that concerns it, as long as `context` lives.
void feedCanvas(CanvasView& view, store::ProjectStore& store, QObject& context);

} // namespace quillabrae::canvas
