// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/CanvasInput.h"
#include "canvas/CanvasKeys.h"
#include "canvas/CanvasOverlays.h"
#include "canvas/CanvasRenderer.h"
#include "canvas/DraftGestures.h"
#include "canvas/DrawingGestures.h"
#include "canvas/GrabTarget.h"
#include "canvas/KeyboardPointer.h"
#include "canvas/PanGesture.h"
#include "canvas/RightMouseDrawing.h"
#include "canvas/SelectionGestures.h"
#include "canvas/TextDraft.h"
#include "canvas/ToolCursor.h"
#include "canvas/ToolDrags.h"
#include "canvas/ZoomController.h"
#include "model/CanvasPoint.h"
#include "model/PaintAppSettings.h"
#include "model/PaintTool.h"

#include <QSizeF>
#include <QUuid>

#include <functional>
#include <optional>

namespace quillabrae::canvas {

/// The logic of the canvas: turns pointer, pinch and key input into edits of the active project,
/// zoom and scrolling. It paints nothing and knows no window. Main thread only.
class CanvasView {
public:
    CanvasView(CanvasHost& host, CanvasTimers& timers, const PointerState& pointer);

    // Surroundings

    /// The scroller that the canvas stands in, which must outlive its use here; null to leave it.
    void setScroller(Scroller* scroller);
    void setDisplay(CanvasDisplay* display) { m_context.display = display; }
    /// To be called on appearing and whenever the viewport's size changes, in screen points.
    void setViewportSize(QSizeF size);
    /// To be called after any change of the active project.
    void projectChanged();
    /// To be called when another project has become active.
    void activeProjectChanged();
    /// To be called after any change of the tool settings.
    void settingsChanged();
    void zoomToFitRequested(const QUuid& requestID) { m_zoom.zoomToFitRequested(requestID); }

    // Input

    /// The surface under a point in document coordinates.
    Surface surfaceAt(QPointF documentPoint) const;
    /// A point in document coordinates in the surface's own.
    QPointF localPoint(Surface surface, QPointF documentPoint) const;
    /// What a press of the left button at a point in document coordinates would take hold of.
    GrabTarget grabTargetAt(QPointF documentPoint) const;
    void dragChanged(Surface surface, const DragValue& value);
    void dragEnded(Surface surface, const DragValue& value);
    /// A drag that scrolls whatever the tool: space bar or middle button.
    void panChanged(QPointF translation) { m_pan.panCanvas(translation); }
    void panEnded() { m_pan.finish(); }
    /// Scrolls by a distance in screen points, as far as the document goes.
    void scrollBy(QPointF distance);
    /// The pointer, no button down, in document coordinates.
    void hover(QPointF documentPoint);
    void hoverEnded();
    /// Whether the event was taken.
    bool handleMagnifyEvent(const MagnifyEvent& event);
    bool handleRightMouseEvent(const RightMouseEvent& event);
    /// A turn of the zooming wheel, in notches.
    bool applyWheelZoom(double notches) { return m_zoom.applyWheelZoom(notches); }
    /// Gives up the drawing gesture that runs, with what it drew. A draft stays.
    void cancelDrawing();
    /// To be called when the canvas is taken off the screen: drafts become pixels.
    void disappear();
    /// To be called when the modifier keys have changed, the pointer still or not.
    void modifiersChanged();
    /// Whether the key was taken.
    bool handleKey(CanvasKey key);
    /// Whether the key would be taken for the keyboard's pixel, ahead of everything else.
    bool isKeyboardPointerKey(CanvasKey key) const { return m_keys.isKeyboardPointerKey(key); }
    /// To be called when the keys go elsewhere: what the keyboard has pressed is let go.
    void keyboardLeft() { m_keyboard.leave(); }
    bool canNudgeSelectionWithArrowKeys() const { return m_keys.canNudgeSelectionWithArrowKeys(); }
    /// Two quick presses at a point of the interactive view. Whether a draft took them.
    bool draftDoubleClick(QPointF location);

    // State

    /// The active project; null when there is none.
    const model::PaintProject* project() const { return m_context.host.project(); }
    bool hasProject() const { return project() != nullptr; }
    model::PaintTool selectedTool() const;
    double currentZoom() const { return m_zoom.currentZoom(); }
    /// The canvas's top left corner in the viewport's points, on a whole device pixel.
    QPointF canvasOriginInViewport(double devicePixelRatio) const;
    /// What is to be painted; good until the project or the drawing changes. Needs a project.
    CanvasFrame frame(double devicePixelRatio) const;
    /// What lies over the canvas. Needs a project.
    OverlayState overlays() const;
    CanvasGeometry geometry() const { return m_context.geometry(); }
    std::optional<model::CanvasPoint> hoveredCanvasPoint() const {
        return m_cursor.hoveredCanvasPoint();
    }
    const LiveDrawing& drawing() const { return m_drawing.live(); }
    /// Whether a stroke of the right button is open.
    bool isRightMouseDrawing() const { return m_rightMouse.isRightMouseDrawing(); }
    /// The drafts; those of the active project alone are on screen.
    const DraftGestures& drafts() const { return m_drafts; }
    const ShapeDraft& shapeDraft() const { return m_drawing.shape(); }
    TextDraft& textDraft() { return m_text; }
    const TextDraft& textDraft() const { return m_text; }
    const SelectionGestures& selection() const { return m_selection; }
    const KeyboardPointer& keyboardPointer() const { return m_keyboard; }
    ZoomController& zoom() { return m_zoom; }
    const ZoomController& zoom() const { return m_zoom; }

private:
    void updateLayout();
    /// Runs what a gesture does next, as an attempt of the selected tool; where there is not enough
    /// memory, the gesture is given up. Whether there was enough.
    bool attempt(const std::function<void()>& gesture);

    void applySettings();
    void toolChanged(model::PaintTool former);
    void keyboardWillPress(QPointF location);
    void dragByKeyboard(const DragValue& value);
    void dragByKeyboardEnded(const DragValue& value);
    void dragByKeyboardCancelled(const DragValue& value);
    /// Ends the keyboard's drag as it stands, when `tool` is no longer the one in use.
    void finishKeyboardDrag(const DragValue& last, model::PaintTool tool);
    void draftStyleChanged(const model::PaintAppSettings& before);

    GestureModifiers m_modifiers;
    CanvasContext m_context;
    ZoomController m_zoom;
    PanGesture m_pan;
    ToolCursor m_cursor;
    DrawingGestures m_drawing;
    TextDraft m_text;
    DraftGestures m_drafts;
    SelectionGestures m_selection;
    ToolDrags m_drags;
    RightMouseDrawing m_rightMouse;
    KeyboardPointer m_keyboard;
    CanvasKeys m_keys;
    /// As they were when last reported.
    model::PaintAppSettings m_settings;
    Modifiers m_reportedModifiers;
    /// The drag under way ran out of memory: its further samples are nothing.
    bool m_isDragGivenUp = false;
};

} // namespace quillabrae::canvas
