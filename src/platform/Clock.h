// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

namespace quillabrae::platform {

/// Where the time comes from, so that tests and scripts can set it.
class Clock {
public:
    virtual ~Clock() = default;
    /// The present instant in UTC, to the millisecond.
    virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock {
public:
    QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};

} // namespace quillabrae::platform
