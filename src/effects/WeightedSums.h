// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>

namespace quillabrae::effects {

/// to[i] = the sum of weights[k] * terms[k][i], for i below `count`. `to` is none of the terms.
/// There are as many terms as weights.
void addWeighted(float* to, std::span<const float* const> terms, std::span<const float> weights,
                 std::size_t count);

} // namespace quillabrae::effects
