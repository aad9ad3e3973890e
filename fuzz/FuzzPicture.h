// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FuzzRequire.h"
#include "codecs/Codecs.h"

#include <csignal>
#include <cstdlib>
#include <exception>

namespace quillabrae::fuzz {

/// Holds what a reader says to be within the limits, and takes its pixels.
class CheckedPicture final : public codecs::PictureOutput {
public:
    std::span<std::uint8_t> begin(const codecs::PictureHeader& header) override {
        // Larger ones are only slow.
        constexpr std::int64_t enoughPixels = std::int64_t{1} << 24U;
        codecs::checkSize(header.width, header.height);
        const std::int64_t pixels = std::int64_t{header.width} * header.height;
        if (pixels > enoughPixels) throw codecs::CodecError("too slow");
        require(m_pixels.empty());
        m_header = header;
        m_pixels.resize(static_cast<std::size_t>(pixels) * 4);
        return m_pixels;
    }

    const codecs::PictureHeader& header() const { return m_header; }
    const std::vector<std::uint8_t>& pixels() const { return m_pixels; }

private:
    codecs::PictureHeader m_header;
    std::vector<std::uint8_t> m_pixels;
};

/// While alive, a library may end its process, as some do over some files. In the program that is a
/// process of its own, and a refusal; so it is here, for a fuzzer that forks. An exception that
/// nobody catches stays a finding.
class LibraryMayGiveUp {
public:
    LibraryMayGiveUp()
        : m_onAbort(std::signal(SIGABRT, [](int) { std::_Exit(EXIT_SUCCESS); })),
          m_onTerminate(std::set_terminate([] { require(false); })) {}
    ~LibraryMayGiveUp() {
        std::signal(SIGABRT, m_onAbort);
        std::set_terminate(m_onTerminate);
    }
    LibraryMayGiveUp(const LibraryMayGiveUp&) = delete;
    LibraryMayGiveUp& operator=(const LibraryMayGiveUp&) = delete;

private:
    void (*m_onAbort)(int);
    std::terminate_handler m_onTerminate;
};

} // namespace quillabrae::fuzz
