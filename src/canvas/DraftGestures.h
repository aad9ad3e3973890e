// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "canvas/DraftHandles.h"

#include <QPointF>
#include <QRectF>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class ShapeDraft;
class TextDraft;
class ZoomController;

/// The drags that a draft takes before the tools do: of its handles, and in the text of its box.
class DraftGestures {
public:
    DraftGestures(CanvasContext& context, const ZoomController& zoom, ShapeDraft& shape,
                  TextDraft& text)
        : m_context(context), m_zoom(zoom), m_shape(shape), m_text(text) {}

    /// Each sample of a drag on the interactive view, from the press on. Whether it was taken.
    bool dragChanged(const DragValue& value);
    bool dragEnded(const DragValue& value);
    /// A second press in the same place: a word of the text. Whether it was taken.
    bool doubleClick(QPointF location);

    /// The draft of the active project; a draft that was begun in another one is out of reach.
    bool hasShape() const;
    bool hasText() const;
    /// The draft's box in the interactive view's screen points. Only with that draft.
    QRectF box(DraftKind draft) const;
    /// The handle under a point of the interactive view; null for none.
    const DraftHandle* handleAt(QPointF location) const;
    bool isInText(QPointF location) const;

private:
    struct Drag {
        /// Null for a drag in the text.
        const DraftHandle* handle = nullptr;
        bool hasBegun = false;
    };

    std::optional<Drag> begin(QPointF location) const;
    void dragHandle(const DraftHandle& handle, QPointF translation);
    void dragInText(const DragValue& value, bool isPress);
    bool isOfActiveProject(const QUuid& layerID) const;
    QPointF inText(QPointF location) const;

    CanvasContext& m_context;
    const ZoomController& m_zoom;
    ShapeDraft& m_shape;
    TextDraft& m_text;
    std::optional<Drag> m_drag;
    /// From the press to the release, whoever takes it.
    bool m_isButtonDown = false;
};

} // namespace quillabrae::canvas
