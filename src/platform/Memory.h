// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace quillabrae::platform {

/// Bytes that a program may take now without others being pushed out; the largest number where the
/// system does not say.
qint64 availableMemory();

} // namespace quillabrae::platform
