// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/Spring.h"

#include <gtest/gtest.h>

#include <numbers>

namespace quillabrae::shell {
namespace {

constexpr double response = 0.5;
constexpr double damping = 0.85;

/// The same spring by many small steps of its equation of motion.
struct SteppedSpring {
    double distance = 0.0;
    double speed = 0.0;

    void advance(double seconds) {
        constexpr double step = 1e-5;
        const double frequency = 2.0 * std::numbers::pi / response;
        const int steps = static_cast<int>(seconds / step);
        for (int count = 0; count < steps; ++count) {
            speed += step * (-frequency * frequency * distance - 2 * damping * frequency * speed);
            distance += step * speed;
        }
    }
};

TEST(Spring, MovesAsItsEquationSays) {
    Spring spring(response, damping);
    SteppedSpring twin;
    spring.displace(44.0);
    twin.distance = 44.0;
    for (int frame = 0; frame < 20; ++frame) {
        spring.advance(0.03);
        twin.advance(0.03);
        EXPECT_NEAR(spring.distance(), twin.distance, 0.05) << frame;
    }
}

TEST(Spring, KeepsItsSpeedWhenItIsDrawnElsewhere) {
    Spring spring(response, damping);
    SteppedSpring twin;
    spring.displace(44.0);
    twin.distance = 44.0;
    spring.advance(0.1);
    twin.advance(0.1);
    spring.displace(-88.0);
    twin.distance -= 88.0;
    for (int frame = 0; frame < 20; ++frame) {
        spring.advance(0.03);
        twin.advance(0.03);
        EXPECT_NEAR(spring.distance(), twin.distance, 0.05) << frame;
    }
}

TEST(Spring, ComesToRestWithinASecond) {
    Spring spring(response, damping);
    spring.displace(440.0);
    EXPECT_FALSE(spring.settle());
    spring.advance(1.0);
    EXPECT_TRUE(spring.settle());
    EXPECT_EQ(spring.distance(), 0.0);
}

} // namespace
} // namespace quillabrae::shell
