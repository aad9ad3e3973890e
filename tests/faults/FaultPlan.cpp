// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/FaultPlan.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace quillabrae::tests::faults {
namespace {

struct Name {
    std::string_view text;
    int number;
};

constexpr std::array errnos{
    Name{"ENOSPC", ENOSPC}, Name{"EIO", EIO},     Name{"EACCES", EACCES},
    Name{"EINTR", EINTR},   Name{"EPERM", EPERM}, Name{"ENOENT", ENOENT},
};

struct Plan {
    std::string_view what;
    int number = 0;
};

/// Everything is as it is told when the process starts.
struct Settings {
    std::string_view below;
    int log = -1;
    Plan plan;
};

std::atomic<bool> isCounting{false};
std::atomic<int> count{0};

std::string_view variable(const char* name) {
    const char* text = std::getenv(name);
    return text == nullptr ? std::string_view() : std::string_view(text);
}

const Settings& settings() {
    static const Settings value = [] {
        Settings made;
        made.below = variable("QUILLABRAE_FAULTS_BELOW");
        if (const auto log = variable("QUILLABRAE_FAULTS_LOG"); !log.empty())
            made.log = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, log.data(),
                                                  O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
        const std::string_view plan = variable("QUILLABRAE_FAULTS_PLAN");
        if (const auto at = plan.find('@'); at != std::string_view::npos)
            made.plan = {plan.substr(0, at), std::atoi(plan.data() + at + 1)};
        return made;
    }();
    return value;
}

void note(int number, const char* call, mode_t mode, std::string_view path) {
    if (settings().log < 0) return;
    std::array<char, PATH_MAX + 64> line{};
    const int size = std::snprintf(line.data(), line.size(), "%d %s %o %.*s\n", number, call, mode,
                                   static_cast<int>(path.size()), path.data());
    ::syscall(SYS_write, settings().log, line.data(), size);
}

[[gnu::constructor]] void beginAtOnce() {
    if (variable("QUILLABRAE_FAULTS_FROM") == "start") begin();
}

} // namespace

void begin() {
    settings();
    isCounting = true;
}

void end() {
    isCounting = false;
}

bool isUnderWay() {
    return isCounting;
}

bool isBelow(std::string_view path) {
    const std::string_view folder = settings().below;
    return !folder.empty() && path.starts_with(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string_view pathOf(int descriptor, Path& room) {
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const long size =
        ::syscall(SYS_readlinkat, AT_FDCWD, link.data(), room.data(), room.size() - 1);
    return {room.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

std::string_view pathOf(int folder, const char* name, Path& room) {
    if (name == nullptr) return {};
    if (*name == '/' || folder == AT_FDCWD) return name;
    const std::string_view start = pathOf(folder, room);
    const std::size_t rest = room.size() - start.size();
    std::snprintf(room.data() + start.size(), rest, "/%s", name);
    return room.data();
}

[[noreturn]] void die() {
    ::syscall(SYS_kill, ::getpid(), SIGKILL);
    for (;;) ::syscall(SYS_pause);
}

Verdict verdict(const char* call, std::string_view path, Needs needs, mode_t mode) {
    if (!isCounting || !isBelow(path)) return {};
    const int number = ++count;
    note(number, call, mode, path);
    const Plan& plan = settings().plan;
    if (plan.what == "full" && number >= plan.number && needs == Needs::room)
        return {What::fail, ENOSPC};
    if (number != plan.number) return {};
    if (plan.what == "kill-before") die();
    if (plan.what == "kill-after") return {What::killAfter, 0};
    if (plan.what == "short") return {What::shorten, 0};
    for (const Name& name : errnos)
        if (name.text == plan.what) return {What::fail, name.number};
    return {};
}

} // namespace quillabrae::tests::faults
