// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::fuzz {

/// Ends the program, which the fuzzer takes for a finding.
inline void require(bool holds) {
    // Unlike an abort, no library does it.
    if (!holds) __builtin_trap();
}

} // namespace quillabrae::fuzz
