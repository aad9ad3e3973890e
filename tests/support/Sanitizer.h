// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::tests {

/// Whether a sanitizer watches the program, which then holds far more memory than its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool hasSanitizer = true;
#else
inline constexpr bool hasSanitizer = false;
#endif

} // namespace quillabrae::tests
