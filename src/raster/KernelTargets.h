// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Builds a kernel once more for processors with wider vectors and picks one when the program
/// starts. Only where the loader can do that; a sanitizer's start-up cannot.
#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define QUILLABRAE_WIDE_KERNEL __attribute__((target_clones("avx2", "default")))
#else
#define QUILLABRAE_WIDE_KERNEL
#endif
