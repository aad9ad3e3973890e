// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/SelectionHandle.h"
#include "canvas/TextDraft.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <span>
#include <variant>

/// The handles of the shape and of the text draft.
namespace quillabrae::canvas {

enum class DraftKind { shape, text };

/// A drag of the whole box.
struct DraftMove {
    friend bool operator==(const DraftMove&, const DraftMove&) = default;
};

/// One handle: a mark on the draft's box that takes a drag. Lengths are screen points.
struct DraftHandle {
    DraftKind draft;
    const char* name;
    /// Where the mark's middle is: 0 at the left or top of the box, 1 at the right or bottom.
    QPointF anchor;
    QSizeF markSize;
    /// The least a press has to move for the drag to begin.
    double minimumDistance;
    std::variant<SelectionHandle, TextDraftResizeAxis, DraftMove> action;
    const char* tooltipTitle;
    const char* tooltipText;

    /// On a box in screen points.
    QPointF place(const QRectF& box) const;
    QRectF mark(const QRectF& box) const;
};

/// Every handle of a draft, those that a press tries first ahead.
std::span<const DraftHandle> draftHandles(DraftKind draft);

/// Null for a name that no handle of the draft has.
const DraftHandle* draftHandleNamed(DraftKind draft, const QString& name);

/// The handle that a press at `point` takes hold of, on a draft whose box is `box`, both in screen
/// points of one space; null for none. Small marks are held a little beyond their edges.
const DraftHandle* draftHandleAt(DraftKind draft, QPointF point, const QRectF& box);

} // namespace quillabrae::canvas
