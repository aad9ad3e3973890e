// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"

#include <QPoint>

namespace quillabrae::canvas {

class CanvasContext;
class DraftGestures;
class DrawingGestures;
class SelectionGestures;
class TextDraft;

/// What the canvas's own keys do: Escape ends the text draft, or else the shape draft, as pixels;
/// the arrows nudge the selection.
class CanvasKeys {
public:
    /// What the keys work on.
    struct Workers {
        DrawingGestures& drawing;
        TextDraft& text;
        const DraftGestures& drafts;
        SelectionGestures& selection;
    };

    CanvasKeys(CanvasContext& context, const Workers& workers)
        : m_context(context), m_workers(workers) {}

    /// Whether the key was taken.
    bool handleKey(CanvasKey key);
    bool canNudgeSelectionWithArrowKeys() const;

private:
    bool commitDraft();
    bool nudge(QPoint direction);

    CanvasContext& m_context;
    Workers m_workers;
};

} // namespace quillabrae::canvas
