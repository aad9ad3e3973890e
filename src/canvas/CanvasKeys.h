// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"

#include <QPoint>

namespace quillabrae::canvas {

class CanvasContext;
class DraftGestures;
class DrawingGestures;
class KeyboardPointer;
class PointerState;
class SelectionGestures;
class TextDraft;

/// What the canvas's own keys do. The arrows nudge the selection. With Ctrl and Alt and nothing to
/// nudge they move the keyboard's pixel, where Space presses the tool and lets it go, Enter lets it
/// go, and Escape gives up what it draws. Else Escape ends the text draft, or the shape draft, as
/// pixels, or puts the keyboard's pixel away.
class CanvasKeys {
public:
    /// What the keys work on.
    struct Workers {
        DrawingGestures& drawing;
        TextDraft& text;
        const DraftGestures& drafts;
        SelectionGestures& selection;
        KeyboardPointer& pointer;
    };

    /// `keys`: the modifier keys as they are.
    CanvasKeys(CanvasContext& context, const PointerState& keys, const Workers& workers)
        : m_context(context), m_keys(keys), m_workers(workers) {}

    /// Whether the key was taken.
    bool handleKey(CanvasKey key);
    /// Whether the key would be taken for the keyboard's pixel.
    bool isKeyboardPointerKey(CanvasKey key) const;
    bool canNudgeSelectionWithArrowKeys() const;

private:
    bool escape();
    bool nudge(QPoint direction);
    bool handlePointerKey(CanvasKey key);

    CanvasContext& m_context;
    const PointerState& m_keys;
    Workers m_workers;
};

} // namespace quillabrae::canvas
