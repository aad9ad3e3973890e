// SPDX-License-Identifier: GPL-3.0-or-later
// to[i] = sum over k of weights[k] * terms[k][i]
#include "effects/WeightedSums.h"

#include "effects/ColorLanes.h"
#include "raster/KernelTargets.h"

#include <array>
#include <cstring>

namespace quillabrae::effects {

using lanes::Floats;

QUILLABRAE_WIDE_KERNEL
void addWeighted(float* to, std::span<const float* const> terms, std::span<const float> weights,
                 std::size_t count) {
    const float* const weight = weights.data();
    const std::size_t termCount = terms.size();
    std::size_t i = 0;
    for (; i + 4 * lanes::count <= count; i += 4 * lanes::count) {
        std::array<Floats, 4> sums{};
        for (std::size_t k = 0; k < termCount; ++k) {
            const float* const term = terms[k] + i;
            for (std::size_t j = 0; j < sums.size(); ++j)
                sums[j] += weight[k] * lanes::loaded(term + lanes::count * j);
        }
        std::memcpy(to + i, sums.data(), sizeof sums);
    }
    for (; i < count; ++i) {
        float sum = 0.0F;
        for (std::size_t k = 0; k < termCount; ++k) sum += weight[k] * terms[k][i];
        to[i] = sum;
    }
}

} // namespace quillabrae::effects
