// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/BitWriter.h"
#include "raster/DeflateFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The parts that every deflate block of our own making has: prefix codes and the header that
/// states them.
namespace quillabrae::raster {

/// The longest code in our blocks, so that the codes of four bytes, or those of a reference with
/// all that goes with them, make one `BitWriter::put`.
constexpr unsigned greatestCodeLength = 12;

/// A code as it goes into the stream, lowest bit first; of length 0 for a symbol that never comes.
struct PrefixCode {
    std::uint16_t bits = 0;
    std::uint16_t length = 0;
};

inline void putCode(BitWriter& writer, PrefixCode code) {
    writer.put(code.bits, code.length);
}

/// Prefix codes for symbols that come that often: Huffman's, canonical, but none of them longer
/// than `greatestCodeLength`. At least two symbols get a code, for the readers that want a whole
/// one.
template <std::size_t Count>
struct PrefixCodes {
    std::array<PrefixCode, Count> of{};

    explicit PrefixCodes(const std::array<std::uint32_t, Count>& counts);
};

using LiteralCodes = PrefixCodes<literalSymbolCount>;
using DistanceCodes = PrefixCodes<distanceSymbolCount>;

/// The codes of four bytes at once.
inline void putFourBytes(BitWriter& writer, const LiteralCodes& codes, const std::uint8_t* bytes) {
    static_assert(4 * greatestCodeLength <= BitWriter::greatestCount);
    std::uint64_t bits = 0;
    unsigned count = 0;
    for (int i = 0; i < 4; ++i) {
        const PrefixCode code = codes.of[bytes[i]];
        bits |= static_cast<std::uint64_t>(code.bits) << count;
        count += code.length;
    }
    writer.put(bits, count);
}

/// The codes of bytes, one after the other.
inline void putBytes(BitWriter& writer, const LiteralCodes& codes,
                     std::span<const std::uint8_t> bytes) {
    std::size_t i = 0;
    for (; i + 4 <= bytes.size(); i += 4) putFourBytes(writer, codes, bytes.data() + i);
    for (; i < bytes.size(); ++i) putCode(writer, codes.of[bytes[i]]);
}

/// The head of a block, not the stream's last, that is coded so.
void putBlockHeader(BitWriter& writer, const LiteralCodes& literals,
                    const DistanceCodes& distances);

/// An empty stored block, which brings the stream to a byte's border.
void putByteBorder(BitWriter& writer);

} // namespace quillabrae::raster
