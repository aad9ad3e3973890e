// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a feed whose items could each be updated to, or none.
#include "FuzzInput.h"
#include "services/Appcast.h"

using namespace quillabrae;
using namespace quillabrae::services;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray feed(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto items = readAppcast(feed);
    if (!items) return 0;
    fuzz::require(items->size() <= 1000);
    for (const AppcastItem& item : *items) {
        const bool isUsable =
            item.url.scheme() == QStringLiteral("https") && !item.url.host().isEmpty() &&
            item.length > 0 && item.length <= maximumPackageBytes && item.signature.size() == 64 &&
            !item.displayVersionString.isEmpty() && item.displayVersionString.size() <= 128;
        fuzz::require(isUsable);
        const auto newest = newestUpdate(*items, item.version);
        fuzz::require(!newest || newest->version > item.version);
    }
    return 0;
}
