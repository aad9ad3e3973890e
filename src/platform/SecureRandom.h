// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

namespace quillabrae::platform {

/// Bytes that nobody can guess, from the system; nothing when it has none to give.
std::optional<QByteArray> secureRandomData(qsizetype count);

} // namespace quillabrae::platform
