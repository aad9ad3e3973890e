// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/DeviceView.h"
#include "raster/BlendKernels.h"

#include <QRect>

#include <cstdint>
#include <vector>

namespace quillabrae::canvas {

struct CanvasFrame;

/// What is drawn over the canvas's pixels: its border, half a canvas pixel wide inside its edges,
/// and the pixel grid, lines of one screen point. Lines of the grid fall on whole device pixels.
class CanvasDecorations {
public:
    /// `device`: the device pixels to draw on, all on the canvas.
    CanvasDecorations(const CanvasFrame& frame, const DeviceView& view, const QRect& device);

    /// Draws on the pixels of device row `y`: B, G, R, A in memory.
    void paintRow(int y, std::uint8_t* row) const;

private:
    /// How the device pixels of one axis stand to the border and to the grid.
    struct Axis {
        /// The parts of each device pixel that lie on the canvas and on the canvas inside its
        /// border.
        std::vector<float> onCanvas;
        std::vector<float> insideBorder;
        std::vector<std::uint8_t> gridAlpha;
        /// Positions in the middle that the border does not touch.
        int clearFirst = 0;
        int clearEnd = 0;

        static Axis of(const DeviceAxis& axis, int first, int count, double canvasLength,
                       bool showsGrid);
        bool isClear(int index) const { return index >= clearFirst && index < clearEnd; }
    };

    void paintBorder(int index, int first, int end, std::uint8_t* row) const;
    void paintGrid(int index, std::uint8_t* row) const;

    QRect m_device;
    Axis m_columns;
    Axis m_rows;
    bool m_showsGrid;
    raster::PixelColor m_borderColor;
    float m_borderAlpha;
};

} // namespace quillabrae::canvas
