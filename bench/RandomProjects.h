// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <QByteArray>

#include <cstdint>

namespace quillabrae::bench {

constexpr qint64 megabyte = qint64{1024} * 1024;

/// The same for the same seed.
QByteArray randomBytes(qint64 size, std::uint32_t seed);

/// Layers of random bytes, which no more than those of pictures can be made smaller.
model::PaintProject projectOf(int layerCount, qint64 bytesEach);

} // namespace quillabrae::bench
