// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SecureRandom.h"

#include <sys/random.h>

#include <cerrno>

namespace quillabrae::platform {

std::optional<QByteArray> secureRandomData(qsizetype count) {
    QByteArray bytes(count, '\0');
    qsizetype filled = 0;
    while (filled < count) {
        const auto wanted = static_cast<std::size_t>(count - filled);
        const ssize_t got = ::getrandom(bytes.data() + filled, wanted, 0);
        if (got > 0)
            filled += got;
        else if (errno != EINTR)
            return std::nullopt;
    }
    return bytes;
}

} // namespace quillabrae::platform
