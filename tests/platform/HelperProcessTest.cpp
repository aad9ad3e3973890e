// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HelperProcess.h"

#include <gtest/gtest.h>

#include <string_view>
#include <thread>

namespace quillabrae::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string textIn(SharedMemory& memory) {
    const auto bytes = memory.bytes();
    return {bytes.begin(), bytes.end()};
}

/// The shell in the helper's place.
HelperEnd runScript(const char* script, const SharedMemory& input, const SharedMemory& output,
                    std::chrono::milliseconds time = 1min, const WorkControl& control = {}) {
    return runHelper(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QString::fromLatin1(script)},
                     input, output, time, control);
}

TEST(HelperProcess, GivesItsInputAndTakesItsOutput) {
    SharedMemory input;
    SharedMemory output;
    ASSERT_TRUE(input.write(bytesOf("one ")));
    ASSERT_TRUE(input.write(bytesOf("two")));
    EXPECT_EQ(runScript("cat </proc/self/fd/3 >&4", input, output), HelperEnd::succeeded);
    EXPECT_EQ(textIn(output), "one two");
}

TEST(HelperProcess, HasNoOtherFilesOpenThanItsOwn) {
    const SharedMemory input;
    SharedMemory output;
    EXPECT_EQ(runScript("ls /proc/$$/fd | tr '\\n' ' ' >&4", input, output), HelperEnd::succeeded);
    EXPECT_EQ(textIn(output).substr(0, 12), "0 1 2 3 4 5 ");
}

TEST(HelperProcess, TellsHowFarItIs) {
    const SharedMemory input;
    const SharedMemory output;
    WorkControl control;
    EXPECT_THROW(
        runHelper(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), QStringLiteral("printf 12345 >&5; exec sleep 60")}, input,
                  output, 1min, control,
                  [&](double fraction) {
                      control.setFraction(fraction);
                      control.cancel();
                  }),
        WorkCancelled);
    EXPECT_EQ(control.fraction(), 0.05);
}

TEST(HelperProcess, TellsHowItEnded) {
    const SharedMemory input;
    SharedMemory output;
    EXPECT_EQ(runScript("exit 3", input, output), HelperEnd::failed);
    EXPECT_EQ(runScript("kill -SEGV $$", input, output), HelperEnd::failed);
    EXPECT_TRUE(output.bytes().empty());
    EXPECT_EQ(runHelper(QStringLiteral("/nowhere/helper"), {}, input, output, 1min, {}),
              HelperEnd::couldNotStart);
    EXPECT_EQ(runHelper(QString(), {}, input, output, 1min, {}), HelperEnd::couldNotStart);
}

TEST(HelperProcess, IsKilledWhenItsTimeIsOver) {
    const SharedMemory input;
    const SharedMemory output;
    const auto start = steady_clock::now();
    EXPECT_EQ(runScript("exec sleep 60", input, output, 50ms), HelperEnd::ranOutOfTime);
    EXPECT_LT(steady_clock::now() - start, 20s);
}

TEST(HelperProcess, IsKilledWhenTheWorkIsCancelled) {
    const SharedMemory input;
    const SharedMemory output;
    WorkControl control;
    std::thread user([&control] {
        std::this_thread::sleep_for(30ms);
        control.cancel();
    });
    const auto start = steady_clock::now();
    EXPECT_THROW(runScript("exec sleep 60", input, output, 1min, control), WorkCancelled);
    EXPECT_LT(steady_clock::now() - start, 20s);
    user.join();
}

TEST(HelperProcess, IsFoundBesideTheProgram) {
    EXPECT_TRUE(helperProgram(QStringLiteral("platform_tests"))
                    .endsWith(QStringLiteral("/platform_tests")));
    EXPECT_TRUE(helperProgram(QStringLiteral("no-such-helper")).isEmpty());
}

} // namespace
} // namespace quillabrae::platform
