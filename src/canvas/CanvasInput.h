// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>

/// The events that the canvas understands, free of any toolkit's own.
namespace quillabrae::canvas {

/// The two surfaces that take a press: the view that holds the canvas and its gutter, and the empty
/// workspace around it.
enum class Surface { interactiveView, workspace };

/// One sample of a drag. Locations are screen points local to the surface that took the press: the
/// interactive view's own coordinates, or document coordinates for the workspace.
struct DragValue {
    QPointF startLocation;
    QPointF location;
    /// The pointer's way since the press, in screen points. It is `location` minus `startLocation`
    /// unless the canvas scrolled under the pointer meanwhile.
    QPointF translation;

    static DragValue between(QPointF start, QPointF now) { return {start, now, now - start}; }
};

/// One step of a pinch.
struct MagnifyEvent {
    double magnification = 0.0;
    /// Seconds on any steady clock.
    double timestamp = 0.0;
    /// The pointer in document coordinates.
    QPointF documentPoint;
};

enum class RightMousePhase { down, dragged, up };

struct RightMouseEvent {
    RightMousePhase phase = RightMousePhase::down;
    /// The pointer in document coordinates.
    QPointF documentPoint;
};

/// The keys that the canvas itself answers.
enum class CanvasKey { left, right, up, down, escape, space, enter };

/// The modifier keys that are down. Command is Ctrl and option is Alt on a PC keyboard.
struct Modifiers {
    bool shift = false;
    bool control = false;
    bool option = false;
    bool command = false;

    friend bool operator==(const Modifiers&, const Modifiers&) = default;
};

} // namespace quillabrae::canvas
