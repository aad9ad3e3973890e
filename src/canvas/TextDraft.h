// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/TextEditing.h"
#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "raster/RasterImage.h"
#include "raster/TextLayout.h"
#include "raster/TextStyle.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace quillabrae::canvas {

class CanvasContext;

/// A text that is being written. Lengths are canvas pixels.
struct CanvasTextDraft {
    QUuid id;
    QString text;
    /// The box's top left corner, on whole pixels.
    model::CanvasPoint point;
    QUuid layerID;
    model::ColorValue color;
    raster::TextStyle style;
    QSizeF textBoxSize;

    friend bool operator==(const CanvasTextDraft&, const CanvasTextDraft&) = default;
};

enum class TextDraftResizeAxis { horizontal, vertical, both };

/// `size` on whole pixels, at least 48 by 32 and at most what is left of the canvas from `point`
/// on, which wins.
QSizeF clampedTextBoxSize(QSizeF size, model::CanvasPoint point, QSizeF canvas);
/// The nearest whole pixel to `point` at which a box of that size is on the canvas.
model::CanvasPoint clampedTextPoint(model::CanvasPoint point, QSizeF textBoxSize, QSizeF canvas);

/// The text draft, of which there is at most one: a box on the canvas with a text to edit, which
/// follows the tool settings until it is drawn into its layer.
class TextDraft {
public:
    explicit TextDraft(CanvasContext& context) : m_context(context) {}

    const std::optional<CanvasTextDraft>& activeTextDraft() const { return m_activeTextDraft; }
    QRectF boxRect() const;

    /// Commits the draft there is, and begins one at `point` on the selected layer unless that is
    /// hidden or locked.
    void beginTextEditing(model::CanvasPoint point);
    /// Draws the text into its layer, with one history entry. Of a blank text, or of one whose
    /// layer is gone, hidden or locked meanwhile, nothing remains.
    void commitActiveText();
    /// To be called when the text tool's settings or the primary colour have changed.
    void refreshActiveTextStyle();

    /// To be called when somebody else has changed the project: the box stays on the canvas.
    void projectChanged();

    /// `translation`: canvas pixels since the drag of the handle began.
    void move(QPointF translation);
    void resize(TextDraftResizeAxis axis, QPointF translation);
    void dragEnded();

    // Only with a draft:

    /// Runs `edit`, and takes over the text that it leaves.
    void edit(const std::function<void(TextEditing&, const raster::TextLayout&)>& edit);
    const TextEditing& editing() const { return m_editing; }
    /// The lines of what the editor shows.
    const raster::TextLayout& layout() const;
    /// The box, with the pixels that a commit would draw.
    const raster::RasterImage& preview() const;

private:
    void changed(const QRectF& before);
    void forget();

    CanvasContext& m_context;
    std::optional<CanvasTextDraft> m_activeTextDraft;
    TextEditing m_editing;
    std::optional<model::CanvasPoint> m_textDragStartPoint;
    std::optional<QSizeF> m_textResizeStartSize;
    /// The canvas that the box was put on.
    QSizeF m_canvas;
    /// Made when asked for.
    mutable std::optional<raster::TextLayout> m_layout;
    mutable raster::RasterImage m_preview;
};

} // namespace quillabrae::canvas
