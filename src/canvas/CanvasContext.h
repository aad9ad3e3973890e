// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasGeometry.h"

#include <QRect>
#include <QSizeF>

#include <functional>
#include <optional>

namespace quillabrae::model {
struct PaintProject;
}

namespace quillabrae::canvas {

class CanvasDisplay;
class CanvasHost;
class CanvasTimers;
class PointerState;
class Scroller;

/// What the gestures of one canvas share: its surroundings and the viewport's size.
class CanvasContext {
public:
    CanvasContext(CanvasHost& host, CanvasTimers& timers, const PointerState& pointer)
        : host(host), timers(timers), pointer(pointer) {}
    CanvasContext(const CanvasContext&) = delete;
    CanvasContext& operator=(const CanvasContext&) = delete;

    CanvasHost& host;
    CanvasTimers& timers;
    const PointerState& pointer;
    /// Null until the canvas stands in a scroller.
    Scroller* scroller = nullptr;
    /// Null when nothing shows the canvas.
    CanvasDisplay* display = nullptr;
    QSizeF viewportSize{0.0, 0.0};

    /// The geometry of the active project; of an empty canvas when there is none.
    CanvasGeometry geometry() const;
    /// The document's size at `zoom`; without a project the document is just the viewport.
    QSizeF documentViewSize(double zoom) const;

    /// Rewrites the active project. Observers can tell such a change from others by `isEditing`:
    /// the canvas reports itself what has to be painted again.
    void editProject(const std::function<void(model::PaintProject&)>& edit);
    bool isEditing() const { return m_isEditing; }

    void repaintCanvasPixels(const QRect& rect) const;
    void repaintOverlays() const;
    void repaintViewport() const;

private:
    bool m_isEditing = false;
};

} // namespace quillabrae::canvas
