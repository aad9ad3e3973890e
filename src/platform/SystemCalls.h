// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileOperations.h"

#include <QString>

#include <unistd.h>

#include <cerrno>
#include <utility>

/// For those who call the system for files and throw what goes wrong.
namespace quillabrae::platform {

/// Throws the reason that `errno` has.
[[noreturn]] inline void failAt(const QString& path) {
    throw FileOperationError(path, errno);
}

/// Runs a system call again for as long as a signal interrupts it.
template <typename Call>
auto retrying(Call&& call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

/// Closes it at its end.
class Descriptor {
public:
    explicit Descriptor(int value) : m_value(value) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int value() const { return m_value; }
    bool isOpen() const { return m_value >= 0; }
    /// The result of close(2), which may be the first to tell of a failed write. One that was
    /// interrupted has closed all the same, and must not be repeated.
    int close() {
        if (m_value < 0) return 0;
        const int result = ::close(std::exchange(m_value, -1));
        return result != 0 && errno == EINTR ? 0 : result;
    }

private:
    int m_value;
};

} // namespace quillabrae::platform
