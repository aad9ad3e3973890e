// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <array>
#include <climits>
#include <string_view>

/// What becomes of the system calls on files below one folder. They are counted from 1, and run as
/// they are unless the process is told otherwise, by its environment:
///
/// QUILLABRAE_FAULTS_BELOW  the folder, absolute
/// QUILLABRAE_FAULTS_LOG    a file outside of it; each call adds "NUMBER CALL MODE PATH", MODE in
///                          octal digits that of what is made or linked, 0 for other calls
/// QUILLABRAE_FAULTS_FROM   "start" to count from the start of the process on
/// QUILLABRAE_FAULTS_PLAN   "WHAT@NUMBER", what the call of that number comes to:
///     an errno's name     it fails so, and nothing is done
///     "short"             it reads or writes half of what it was asked for
///     "full"              it and all later calls that need room fail with ENOSPC
///     "kill-before", "kill-after"   the process is killed instead of it, or when it is done
///
/// Unless it is told FROM, it counts from the first call of `quillabraeFaultsBegin` to that of
/// `quillabraeFaultsEnd`. A program finds both with dlsym(3).
///
/// It runs within the C library's own functions, so what it does for itself are bare system calls.
namespace quillabrae::tests::faults {

using Path = std::array<char, PATH_MAX>;

enum class Needs { nothing, room };
enum class What { run, fail, shorten, killAfter };

struct Verdict {
    What what = What::run;
    int error = 0;
};

void begin();
void end();
bool isUnderWay();

bool isBelow(std::string_view path);

/// Where a descriptor leads; empty where it is no file's.
std::string_view pathOf(int descriptor, Path& room);
std::string_view pathOf(int folder, const char* name, Path& room);

[[noreturn]] void die();

/// Counts a call, and what is to become of it. `mode` is that of a file or folder which it makes or
/// links.
Verdict verdict(const char* call, std::string_view path, Needs needs = Needs::nothing,
                mode_t mode = 0);

} // namespace quillabrae::tests::faults
