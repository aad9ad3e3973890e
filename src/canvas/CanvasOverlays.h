// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/MarchingAnts.h"
#include "canvas/SelectionMaskOutline.h"
#include "model/CanvasPoint.h"
#include "model/PixelSelection.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QRegion>
#include <QSizeF>

#include <optional>

namespace quillabrae::canvas {

struct CanvasFrame;

/// What lies over the canvas and takes no part in its pixels.
struct OverlayState {
    /// The selection in force.
    std::optional<model::PixelSelection> selection;
    /// Where the eraser would erase, and how wide (canvas pixels).
    std::optional<model::CanvasPoint> eraserCenter;
    double eraserDiameter = 0.0;
    /// The pixel that the keyboard points at, and whether it has the tool pressed there.
    std::optional<QPoint> keyboardPixel;
    bool isKeyboardPressed = false;

    friend bool operator==(const OverlayState&, const OverlayState&) = default;
};

/// Paints the marching ants, the selection's handles, the eraser's circle and the keyboard's pixel
/// over a frame of the canvas. Coordinates are points of the viewport.
class CanvasOverlays {
public:
    /// Takes in what the next paint is to show. Costs little when nothing has changed.
    void prepare(const CanvasFrame& frame, const OverlayState& state);
    /// Whether there are ants, which are drawn over the pixels under them.
    bool hasAnts() const { return m_ants.has_value(); }
    /// Where something shows.
    QRegion region() const;
    QRegion antsRegion() const;

    /// Draws the ants over `base`, RGB32, the viewport's device pixels. `exposed` is what has to be
    /// painted, all of which is.
    void paintAnts(QPainter& painter, const QImage& base, const QRegion& exposed, int phase,
                   const QColor& accent);
    /// Draws the handles, the eraser's circle and the keyboard's pixel.
    void paintMarks(QPainter& painter, const QColor& accent) const;

private:
    /// What the ants depend on.
    struct AntsKey {
        model::PixelSelection selection;
        double zoomScale = 0.0;
        QPointF canvasOrigin;
        QSizeF viewportSize;
        double devicePixelRatio = 0.0;

        friend bool operator==(const AntsKey&, const AntsKey&) = default;
    };

    void layOutAnts(const AntsKey& key);
    void addRectSegments(const QRectF& rect);
    void addMaskSegments(const SelectionMaskOutlinePlan& plan, const QRectF& rect);
    QRectF handleRect(QPointF center) const;
    void paintKeyboardFrame(QPainter& painter, const QColor& accent) const;

    SelectionMaskOutlineCache m_outlines;
    std::optional<AntsKey> m_key;
    std::optional<MarchingAnts> m_ants;
    double m_devicePixelRatio = 1.0;
    /// The selection's rectangle.
    QRectF m_selectionRect;
    std::optional<QRectF> m_eraserCircle;
    std::optional<QRectF> m_keyboardFrame;
    bool m_isKeyboardPressed = false;
    /// Where ants are drawn before they go to the screen, valid where that happened last.
    QImage m_painted;
};

/// How far the dashes have marched `seconds` after the start: whole points, 0 to 23.
int marchingAntsPhase(double seconds);

/// Seconds between two steps of the ants.
constexpr double marchingAntsInterval = 1.0 / 18.0;

} // namespace quillabrae::canvas
