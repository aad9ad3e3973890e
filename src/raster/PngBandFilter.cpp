// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngBandFilter.h"

#include "raster/AlphaKernels.h"
#include "raster/KernelTargets.h"
#include "raster/PngFilter.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr std::size_t blockSize = PngBandFilter::blockSize;

/// The processor's own reading ahead stops at the end of a page, which a row of unchanged pixels is
/// through within nanoseconds.
constexpr std::size_t prefetchDistance = 4096;
constexpr std::size_t cacheLineSize = 64;

void prefetchBlock([[maybe_unused]] const std::uint8_t* bytes) {
#if defined(__GNUC__)
    for (std::size_t line = 0; line < blockSize; line += cacheLineSize)
        __builtin_prefetch(bytes + line);
#endif
}

QUILLABRAE_WIDE_KERNEL
bool areEqual(const std::uint8_t* a, const std::uint8_t* b, std::size_t byteCount) {
    if (byteCount != blockSize) return std::memcmp(a, b, byteCount) == 0;
    std::uint8_t difference = 0;
    for (std::size_t i = 0; i < blockSize; ++i)
        difference = static_cast<std::uint8_t>(difference | (a[i] ^ b[i]));
    return difference == 0;
}

} // namespace

SparseBytes PngBandFilter::filter(const RasterImage& image, int firstRow, int rowCount) {
    prepare(image.stride(), rowCount);
    filterFirstRow(image.row(firstRow));
    for (int i = 1; i < rowCount; ++i) filterRowBelow(image.row(firstRow + i), i);
    return {.bytes = m_bytes, .live = m_live};
}

void PngBandFilter::prepare(std::size_t stride, int rowCount) {
    m_live.clear();
    const std::size_t byteCount = (stride + 1) * static_cast<std::size_t>(rowCount);
    if (stride == m_stride && byteCount == m_bytes.size()) return;
    m_stride = stride;
    m_blocksOfRow = (stride + blockSize - 1) / blockSize;
    m_bytes.assign(byteCount, 0);
    m_isUsed.assign(m_blocksOfRow * static_cast<std::size_t>(rowCount), 0);
    m_straight.resize(stride);
}

void PngBandFilter::filterFirstRow(const std::uint8_t* row) {
    std::uint8_t* filtered = m_bytes.data();
    filtered[0] = static_cast<std::uint8_t>(PngFilter::sub);
    addLive({0, 1});
    unpremultiplyPixels(row, m_straight.data(), m_stride / bytesPerPixel);
    filterSub(m_straight.data(), filtered + 1, m_stride, bytesPerPixel);
    for (std::size_t block = 0; block < m_blocksOfRow; ++block) {
        const std::size_t begin = 1 + block * blockSize;
        const std::size_t end = std::min(begin + blockSize, m_stride + 1);
        m_isUsed[block] = isAllZero(filtered + begin, end - begin) ? 0 : 1;
        if (m_isUsed[block] != 0) addLive({begin, end});
    }
}

void PngBandFilter::filterRowBelow(const std::uint8_t* row, int index) {
    const std::size_t rowBegin = static_cast<std::size_t>(index) * (m_stride + 1);
    std::uint8_t* const isUsed = m_isUsed.data() + static_cast<std::size_t>(index) * m_blocksOfRow;
    m_bytes[rowBegin] = static_cast<std::uint8_t>(PngFilter::up);
    addLive({rowBegin, rowBegin + 1});
    for (std::size_t block = 0; block < m_blocksOfRow; ++block) {
        const std::size_t at = block * blockSize;
        const std::size_t size = std::min(blockSize, m_stride - at);
        std::uint8_t* const filtered = m_bytes.data() + rowBegin + 1 + at;
        prefetchBlock(row + at + prefetchDistance);
        if (areEqual(row + at, row + at - m_stride, size)) {
            if (isUsed[block] != 0) std::memset(filtered, 0, size);
            isUsed[block] = 0;
            continue;
        }
        unpremultiplyPixels(row + at, m_straightBlock.data(), size / bytesPerPixel);
        filterUp(m_straightBlock.data(), m_straight.data() + at, filtered, size);
        std::memcpy(m_straight.data() + at, m_straightBlock.data(), size);
        isUsed[block] = 1;
        addLive({rowBegin + 1 + at, rowBegin + 1 + at + size});
    }
}

void PngBandFilter::addLive(ByteRange range) {
    if (!m_live.empty() && m_live.back().end == range.begin)
        m_live.back().end = range.end;
    else
        m_live.push_back(range);
}

} // namespace quillabrae::raster
