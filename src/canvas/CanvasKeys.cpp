// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasKeys.h"

#include "canvas/CanvasContext.h"
#include "canvas/DraftGestures.h"
#include "canvas/DrawingGestures.h"
#include "canvas/PointerState.h"
#include "canvas/SelectionEdit.h"
#include "canvas/SelectionGestures.h"
#include "canvas/TextDraft.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// Canvas pixels that an arrow key moves the selection by with Command.
constexpr int farNudge = 20;

constexpr std::array<std::pair<CanvasKey, QPoint>, 4> directions{{
    {CanvasKey::left, QPoint(-1, 0)},
    {CanvasKey::right, QPoint(1, 0)},
    {CanvasKey::up, QPoint(0, -1)},
    {CanvasKey::down, QPoint(0, 1)},
}};

} // namespace

bool CanvasKeys::handleKey(CanvasKey key) {
    if (key == CanvasKey::escape) return commitDraft();
    const auto* direction =
        std::ranges::find(directions, key, [](const auto& row) { return row.first; });
    return direction != directions.end() && nudge(direction->second);
}

bool CanvasKeys::canNudgeSelectionWithArrowKeys() const {
    return !m_workers.drafts.hasShape() && !m_workers.drafts.hasText() &&
           selectionInForce(m_context).has_value();
}

bool CanvasKeys::nudge(QPoint direction) {
    if (!canNudgeSelectionWithArrowKeys()) return false;
    const int step = m_context.pointer.modifiers().command ? farNudge : 1;
    m_workers.selection.nudgeSelection(QSizeF(direction.x() * step, direction.y() * step));
    return true;
}

bool CanvasKeys::commitDraft() {
    if (m_context.pointer.modifiers() != Modifiers{}) return false;
    if (m_workers.drafts.hasText()) {
        m_workers.text.commitActiveText();
    } else if (m_workers.drafts.hasShape()) {
        m_workers.drawing.commitActiveShape();
    } else {
        return false;
    }
    return true;
}

} // namespace quillabrae::canvas
