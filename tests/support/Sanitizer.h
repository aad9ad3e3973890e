// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::tests {

/// Whether a sanitizer watches the program, which then holds far more memory than its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool hasSanitizer = true;
#else
inline constexpr bool hasSanitizer = false;
#endif

/// Whether that is the one of threads, which holds the most.
#ifdef __SANITIZE_THREAD__
inline constexpr bool hasThreadSanitizer = true;
#else
inline constexpr bool hasThreadSanitizer = false;
#endif

} // namespace quillabrae::tests
