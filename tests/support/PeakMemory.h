// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace quillabrae::tests {

/// How much memory the process holds at most while this object lives, beyond what it held before.
class PeakMemory {
public:
    PeakMemory();
    /// Bytes.
    qint64 growth() const;

private:
    qint64 m_start;
};

} // namespace quillabrae::tests
