// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::shell {

/// A distance that a damped spring draws to 0. `response` is the period of the undamped swing in
/// seconds, `damping` the fraction of critical damping, below 1. Drawn elsewhere while it still
/// moves, it goes on at the speed that it has.
class Spring {
public:
    Spring() = default;
    Spring(double response, double damping);

    /// Adds to the distance that is left.
    void displace(double distance) { m_distance += distance; }
    void advance(double seconds);
    double distance() const { return m_distance; }
    /// Whether nothing is left to be seen of the movement; puts the spring to its end.
    bool settle();

private:
    double m_frequency = 0.0;
    double m_damping = 0.0;
    double m_distance = 0.0;
    double m_speed = 0.0;
};

} // namespace quillabrae::shell
