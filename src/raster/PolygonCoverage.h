// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// How much of each pixel lies inside a closed polygon, which may cross itself: the exact area of
/// the points around which it winds at all, as a byte.
class PolygonCoverage {
public:
    /// Pixel (0, 0) reaches from (0, 0) to (1, 1). All coordinates are finite.
    explicit PolygonCoverage(std::span<const model::CanvasPoint> corners);

    struct Edge {
        double top;
        double bottom;
        double topX;
        double bottomX;
        /// +1 for an edge that runs downwards, -1 for one that runs upwards.
        int winding;

        double xAt(double y) const { return topX + (y - top) / (bottom - top) * (bottomX - topX); }
    };

    /// The edges in reach of some rows, and room to work in.
    class Rows {
    public:
        Rows(const PolygonCoverage& polygon, int first, int last);
        /// The coverage of the pixels 0 to alpha.size() - 1 of row `y`, one of those rows.
        void fillRow(int y, std::span<std::uint8_t> alpha);

    private:
        /// An edge between the top and the bottom of a slab, which it crosses whole.
        struct Crossing {
            double topX;
            double bottomX;
            int winding;
            double xAt(double part) const { return topX + part * (bottomX - topX); }
        };

        void addSlab(double top, double bottom);
        void findMeetings();
        void addPiece(double height, double from, double to);
        void addEdge(double area, double x, double otherX);
        void writeAlpha(std::span<std::uint8_t> alpha) const;

        std::vector<Edge> m_edges;
        std::vector<Edge> m_rowEdges;
        std::vector<double> m_cuts;
        std::vector<Crossing> m_crossings;
        std::vector<Crossing> m_order;
        std::vector<double> m_meetings;
        std::vector<double> m_steps;
        std::size_t m_width = 0;
        std::size_t m_firstStep = 0;
        std::size_t m_lastStep = 0;
    };

private:
    std::vector<Edge> m_edges;
};

} // namespace quillabrae::raster
