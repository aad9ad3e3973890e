// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LiteralDeflate.h"

#include "raster/DeflateBlock.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {
namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;

void putBlock(BitWriter& writer, ByteSpan bytes) {
    std::array<std::uint32_t, literalSymbolCount> counts{};
    std::ranges::copy(countBytes(bytes), counts.begin());
    counts[endOfBlockSymbol] = 1;
    const LiteralCodes codes(counts);
    putBlockHeader(writer, codes, DistanceCodes({}));
    putBytes(writer, codes, bytes);
    putCode(writer, codes.of[endOfBlockSymbol]);
}

} // namespace

ByteCounts countBytes(ByteSpan bytes) {
    // Four tables, so that equal neighbours do not wait for one another's count.
    std::array<ByteCounts, 4> counts{};
    std::size_t i = 0;
    for (; i + 4 <= bytes.size(); i += 4)
        for (std::size_t j = 0; j < 4; ++j) ++counts[j][bytes[i + j]];
    for (; i < bytes.size(); ++i) ++counts[0][bytes[i]];
    for (std::size_t value = 0; value < 256; ++value)
        counts[0][value] += counts[1][value] + counts[2][value] + counts[3][value];
    return counts[0];
}

std::size_t literalSize(const ByteCounts& counts) {
    double total = 0;
    for (const std::uint32_t count : counts) total += count;
    double bits = 0;
    for (const std::uint32_t count : counts)
        if (count != 0) bits += count * std::max(std::log2(total / count), 1.0);
    return static_cast<std::size_t>(bits / 8);
}

std::size_t deflateLiterals(ByteSpan bytes, std::span<std::uint8_t> out) {
    BitWriter writer(out.data());
    for (std::size_t at = 0; at < bytes.size(); at += blockSize)
        putBlock(writer, bytes.subspan(at, std::min(blockSize, bytes.size() - at)));
    putByteBorder(writer);
    return writer.size();
}

} // namespace quillabrae::raster
