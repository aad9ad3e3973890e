// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a feed whose items could each be updated to, or none.
#include "services/Appcast.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace quillabrae::services;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray feed(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto items = readAppcast(feed);
    if (!items) return 0;
    if (items->size() > 1000) std::abort();
    for (const AppcastItem& item : *items) {
        const bool isUsable =
            item.url.scheme() == QStringLiteral("https") && !item.url.host().isEmpty() &&
            item.length > 0 && item.length <= maximumPackageBytes && item.signature.size() == 64 &&
            !item.displayVersionString.isEmpty() && item.displayVersionString.size() <= 128;
        if (!isUsable) std::abort();
        const auto newest = newestUpdate(*items, item.version);
        if (newest && !(newest->version > item.version)) std::abort();
    }
    return 0;
}
