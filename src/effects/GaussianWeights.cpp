// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/GaussianWeights.h"

#include <cmath>

namespace quillabrae::effects {

std::vector<float> gaussianWeights(double deviation) {
    // Beyond 3.5 deviations there is less than a part in two thousand.
    const int reach = std::max(static_cast<int>(std::ceil(3.5 * deviation)), 1);
    std::vector<double> samples;
    double sum = 0.0;
    for (int distance = -reach; distance <= reach; ++distance) {
        samples.push_back(std::exp(-0.5 * distance * distance / (deviation * deviation)));
        sum += samples.back();
    }
    std::vector<float> weights;
    for (const double sample : samples) weights.push_back(static_cast<float>(sample / sum));
    return weights;
}

} // namespace quillabrae::effects
