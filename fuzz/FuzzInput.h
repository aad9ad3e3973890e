// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FuzzRequire.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace quillabrae::fuzz {

inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

} // namespace quillabrae::fuzz
