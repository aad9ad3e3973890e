// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace quillabrae::fuzz {

inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// Ends the program, which the fuzzer takes for a finding.
inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace quillabrae::fuzz
