// SPDX-License-Identifier: GPL-3.0-or-later
// With w = 2 pi / response, z = damping and u = w sqrt(1 - z^2), x'' = -w^2 x - 2 z w x' has the
// solution x(t) = exp(-z w t) (x0 cos ut + (v0 + z w x0) / u sin ut).
#include "shell/panels/Spring.h"

#include <cmath>
#include <numbers>

namespace quillabrae::shell {
namespace {

constexpr double stillDistance = 0.25;
constexpr double stillSpeed = 4.0;

} // namespace

Spring::Spring(double response, double damping)
    : m_frequency(2.0 * std::numbers::pi / response), m_damping(damping) {}

void Spring::advance(double seconds) {
    const double decay = m_damping * m_frequency;
    const double swing = m_frequency * std::sqrt(1.0 - m_damping * m_damping);
    const double fading = std::exp(-decay * seconds);
    const double cosine = std::cos(swing * seconds);
    const double sine = std::sin(swing * seconds);
    const double push = (m_speed + decay * m_distance) / swing;
    const double distance = fading * (m_distance * cosine + push * sine);
    m_speed = fading * (swing * (push * cosine - m_distance * sine)) - decay * distance;
    m_distance = distance;
}

bool Spring::settle() {
    if (std::abs(m_distance) > stillDistance || std::abs(m_speed) > stillSpeed) return false;
    m_distance = 0.0;
    m_speed = 0.0;
    return true;
}

} // namespace quillabrae::shell
