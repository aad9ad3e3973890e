// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasKeys.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/DraftGestures.h"
#include "canvas/DrawingGestures.h"
#include "canvas/KeyboardPointer.h"
#include "canvas/PointerState.h"
#include "canvas/SelectionEdit.h"
#include "canvas/SelectionGestures.h"
#include "canvas/TextDraft.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// Canvas pixels that an arrow key moves the selection by with Command.
constexpr int farNudge = 20;
/// Canvas pixels that an arrow key moves the keyboard's pixel by with Shift.
constexpr int farStep = 10;

constexpr std::array<std::pair<CanvasKey, QPoint>, 4> directions{{
    {CanvasKey::left, QPoint(-1, 0)},
    {CanvasKey::right, QPoint(1, 0)},
    {CanvasKey::up, QPoint(0, -1)},
    {CanvasKey::down, QPoint(0, 1)},
}};

std::optional<QPoint> directionOf(CanvasKey key) {
    const auto* row =
        std::ranges::find(directions, key, [](const auto& candidate) { return candidate.first; });
    if (row == directions.end()) return std::nullopt;
    return row->second;
}

} // namespace

bool CanvasKeys::handleKey(CanvasKey key) {
    if (isKeyboardPointerKey(key)) return handlePointerKey(key);
    if (key == CanvasKey::escape) return escape();
    const auto direction = directionOf(key);
    return direction && nudge(*direction);
}

bool CanvasKeys::isKeyboardPointerKey(CanvasKey key) const {
    const KeyboardPointer& pointer = m_workers.pointer;
    switch (key) {
        case CanvasKey::space:
            return pointer.isShown();
        case CanvasKey::enter:
        case CanvasKey::escape:
            return pointer.isPressed();
        default:
            return movesKeyboardPointer(m_keys.modifiers()) &&
                   m_context.host.project() != nullptr &&
                   (pointer.isPressed() || !canNudgeSelectionWithArrowKeys());
    }
}

bool CanvasKeys::handlePointerKey(CanvasKey key) {
    KeyboardPointer& pointer = m_workers.pointer;
    if (key == CanvasKey::space) {
        pointer.pressOrRelease();
    } else if (key == CanvasKey::enter) {
        pointer.release();
    } else if (key == CanvasKey::escape) {
        pointer.cancel();
    } else {
        pointer.move(*directionOf(key) * (m_keys.modifiers().shift ? farStep : 1));
    }
    return true;
}

bool CanvasKeys::canNudgeSelectionWithArrowKeys() const {
    return !m_workers.drafts.hasShape() && !m_workers.drafts.hasText() &&
           selectionInForce(m_context).has_value();
}

bool CanvasKeys::nudge(QPoint direction) {
    if (!canNudgeSelectionWithArrowKeys()) return false;
    const int step = m_keys.modifiers().command ? farNudge : 1;
    m_workers.selection.nudgeSelection(QSizeF(direction.x() * step, direction.y() * step));
    return true;
}

bool CanvasKeys::escape() {
    if (m_keys.modifiers() != Modifiers{}) return false;
    if (m_workers.drafts.hasText()) {
        m_workers.text.commitActiveText();
    } else if (m_workers.drafts.hasShape()) {
        m_workers.drawing.commitActiveShape();
    } else if (m_workers.pointer.isShown()) {
        m_workers.pointer.leave();
    } else {
        return false;
    }
    return true;
}

} // namespace quillabrae::canvas
