// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "canvas/PointerState.h"
#include "model/PaintProject.h"

#include <QPoint>
#include <QPointF>

#include <functional>
#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class ToolCursor;
class ZoomController;

/// A pixel of the canvas that the keyboard points at. It works there as the left button would: a
/// press stays down while the pixel moves, until it is let go. A tool that only clicks is pressed
/// and let go in one.
class KeyboardPointer {
public:
    /// What takes the drags, all in the interactive view's coordinates.
    struct Drags {
        /// A press is to come at that place.
        std::function<void(QPointF)> willBegin;
        std::function<void(const DragValue&)> changed;
        std::function<void(const DragValue&)> ended;
        /// Gives up the drag with what it did to the live images.
        std::function<void(const DragValue&)> cancelled;
    };

    KeyboardPointer(CanvasContext& context, const ZoomController& zoom, ToolCursor& cursor,
                    Drags drags);

    bool isShown() const { return m_isShown; }
    bool isPressed() const { return m_pressedAt.has_value(); }
    /// The pixel's column and row while it is shown; always on the canvas. None without a project.
    std::optional<QPoint> pixel() const;

    /// Shows the pixel, at first where the pointer was or in the middle of what can be seen, and
    /// moves it by `distance` canvas pixels as far as the canvas goes. Scrolls to it.
    void move(QPoint distance);
    /// Presses the tool at the pixel, or lets it go.
    void pressOrRelease();
    /// Lets the tool go; whether it was pressed.
    bool release();
    /// Forgets the press, whose gesture somebody else ends; its last sample.
    std::optional<DragValue> letGo();
    /// Gives up the gesture, and the project is again as it was at the press unless something else
    /// has changed it meanwhile. Whether one ran.
    bool cancel();
    /// Lets go and shows the pixel no more.
    void leave();
    /// To be called when somebody else has changed the project.
    void projectChangedElsewhere() { m_before.reset(); }

private:
    QPoint firstPixel() const;
    QPoint heldToCanvas(QPoint pixel) const;
    QPointF location(QPoint pixel) const;
    DragValue dragValue() const;
    void scrollToPixel() const;

    CanvasContext& m_context;
    const ZoomController& m_zoom;
    ToolCursor& m_cursor;
    Drags m_drags;
    bool m_isShown = false;
    /// The last one, also while it is not shown.
    std::optional<QPoint> m_pixel;
    std::optional<QPoint> m_pressedAt;
    /// The project at the press, for taking the gesture back.
    std::optional<model::PaintProject> m_before;
};

/// Whether these keys are those that move the pixel: with Ctrl and Alt both.
constexpr bool movesKeyboardPointer(const Modifiers& modifiers) {
    return modifiers.command && modifiers.option;
}

/// The modifier keys for the gestures. While the keyboard draws, those that move the pixel mean
/// nothing to what is drawn.
class GestureModifiers final : public PointerState {
public:
    explicit GestureModifiers(const PointerState& keys) : m_keys(keys) {}
    Modifiers modifiers() const override {
        const Modifiers keys = m_keys.modifiers();
        if (!isKeyboardDrawing) return keys;
        return {.shift = keys.shift && !movesKeyboardPointer(keys)};
    }
    std::optional<QPointF> viewportLocation() const override { return m_keys.viewportLocation(); }

    bool isKeyboardDrawing = false;

private:
    const PointerState& m_keys;
};

} // namespace quillabrae::canvas
