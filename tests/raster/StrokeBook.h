// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace quillabrae::raster {

/// A soft stroke by the book: strokes of falling width over one another.
struct BookPass {
    double width = 0.0;
    double alpha = 0.0;
};

/// `h`: the hardness over 100.
std::vector<BookPass> bookSoftPasses(double lineWidth, double h, double alpha);

/// The alpha that the passes leave at a distance, one pass after the other.
double bookAlpha(const std::vector<BookPass>& passes, double distance, bool isDot);

} // namespace quillabrae::raster
