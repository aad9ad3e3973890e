// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillabrae::raster {

/// One pass of a brush: a stroke of `radius` pixels painted with `alpha` (0 to 1).
struct BrushPass {
    double radius = 0.0;
    double alpha = 0.0;
};

/// Whether a stroke is a line or a single dot, whose radius is never below half a pixel.
enum class StrokeForm { dot, line };

/// The core of a soft edge, 0 to below 0.995, from a hardness in percent; nothing for a hard edge.
std::optional<double> softCore(std::optional<double> hardness);

/// The passes that paint a stroke of `lineWidth` pixels with a colour of that alpha, in painting
/// order, widest first. One pass for a hard edge.
std::vector<BrushPass> brushPasses(double lineWidth, std::optional<double> hardness, double alpha,
                                   StrokeForm form);

class StrokeEdge;

/// The edge of such a stroke. The samples of a live stroke follow one another with the same one, so
/// each thread remembers the edge it asked for last; that shows in nothing but the time.
std::shared_ptr<const StrokeEdge> strokeEdge(double lineWidth, std::optional<double> hardness,
                                             double alpha, StrokeForm form);

/// The alpha that a stack of passes leaves on a transparent pixel, as a function of the distance
/// between the pixel's centre and the stroke's centre line. It never grows with the distance.
class StrokeEdge {
public:
    /// `passes` from the widest to the narrowest.
    explicit StrokeEdge(const std::vector<BrushPass>& passes);

    /// The alpha at distance 0.
    std::uint8_t maximum() const { return m_alpha.front(); }
    /// From here on the alpha is 0. 0 when nothing is painted at all.
    double reach() const { return m_reach; }
    /// Up to here the alpha is the maximum; negative when it is nowhere flat.
    double flatRadius() const { return m_flatRadius; }

    /// Entry k is the alpha at distance `tableStart()` + k / `entriesPerPixel()`. The first one
    /// stands for all distances before, the last one, which is 0, for all beyond.
    const std::vector<std::uint8_t>& alpha() const { return m_alpha; }
    double tableStart() const { return m_tableStart; }
    int entriesPerPixel() const { return m_entriesPerPixel; }

private:
    /// What shows through all passes, at each entry of the table.
    std::vector<float> throughByDistance(const std::vector<BrushPass>& passes,
                                         const std::vector<float>& shown, std::size_t count) const;

    double m_tableStart = 0.0;
    int m_entriesPerPixel = 1;
    std::vector<std::uint8_t> m_alpha{0};
    double m_reach = 0.0;
    double m_flatRadius = -1.0;
};

} // namespace quillabrae::raster
