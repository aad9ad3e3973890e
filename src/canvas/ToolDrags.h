// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "canvas/PanGesture.h"
#include "model/PaintTool.h"

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class DrawingGestures;
class SelectionGestures;
class TextDraft;
class ToolCursor;
class ZoomController;

/// What each tool does with a drag of the left button on either surface. Needs a project.
class ToolDrags {
public:
    /// What works with a drag.
    struct Workers {
        ZoomController& zoom;
        PanGesture& pan;
        ToolCursor& cursor;
        DrawingGestures& drawing;
        TextDraft& text;
        SelectionGestures& selection;
    };

    ToolDrags(CanvasContext& context, const Workers& workers)
        : m_context(context), m_workers(workers) {}

    void dragChanged(Surface surface, const DragValue& value);
    void dragEnded(Surface surface, const DragValue& value);
    /// To be called when the drag that runs is given up.
    void dragCancelled() { m_surface.reset(); }
    /// To be called when another tool has been chosen after `former`. A drag on a surface where the
    /// new tool does nothing ends as it stands.
    void toolChanged(model::PaintTool former);

private:
    /// What a tool does with the drag of one surface. A tool without a row does nothing there.
    struct Route {
        Surface surface;
        bool (*serves)(model::PaintTool tool);
        void (ToolDrags::*changed)(const DragValue& value);
        void (ToolDrags::*ended)(const DragValue& value);
    };
    static const Route* route(Surface surface, model::PaintTool tool);

    void drawChanged(const DragValue& value);
    void drawEnded(const DragValue& value);
    void eraserWorkspaceChanged(const DragValue& value);
    void eraserWorkspaceEnded(const DragValue& value);
    void gradientWorkspaceChanged(const DragValue& value);
    void gradientWorkspaceEnded(const DragValue& value);
    void selectionChanged(const DragValue& value);
    void selectionEnded(const DragValue& value);
    void selectionWorkspaceChanged(const DragValue& value);
    void selectionWorkspaceEnded(const DragValue& value);
    void panToolChanged(const DragValue& value);
    void panToolEnded(const DragValue& value);
    void pickColor(const DragValue& value);
    void zoomToolEnded(const DragValue& value);
    void textToolEnded(const DragValue& value);
    void ignoreDrag(const DragValue&) {}

    CanvasContext& m_context;
    Workers m_workers;
    /// Of the drag that runs.
    std::optional<Surface> m_surface;
};

} // namespace quillabrae::canvas
