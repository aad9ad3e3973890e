// SPDX-License-Identifier: GPL-3.0-or-later
#include "codecs/Codecs.h"

#include <sys/resource.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QUILLABRAE_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILLABRAE_SANITIZED
#endif
#endif

namespace quillabrae::codecs {

void checkSize(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1) throw CodecError("the picture has no size");
    if (width > maximumSide || height > maximumSide || width * height > maximumPixels)
        throw LimitError();
}

void limitMemory([[maybe_unused]] std::int64_t bytes, [[maybe_unused]] std::int64_t pixels) {
#ifndef QUILLABRAE_SANITIZED
    constexpr std::int64_t bytesForEachPixel = 24;
    rlimit limit{};
    if (::getrlimit(RLIMIT_AS, &limit) != 0) return;
    limit.rlim_cur = static_cast<rlim_t>(bytes + pixels * bytesForEachPixel);
    if (limit.rlim_max != RLIM_INFINITY && limit.rlim_cur > limit.rlim_max)
        limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_AS, &limit);
#endif
}

} // namespace quillabrae::codecs
