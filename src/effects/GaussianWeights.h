// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace quillabrae::effects {

/// The samples of a Gaussian of that standard deviation (above 0) at whole distances, from far on
/// one side to as far on the other, cut off where they no longer count among bytes. An odd number
/// of them, with the sum 1.
std::vector<float> gaussianWeights(double deviation);

} // namespace quillabrae::effects
