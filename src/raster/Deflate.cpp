// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Deflate.h"

#include "raster/LiteralDeflate.h"
#include "raster/SparseDeflate.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace quillabrae::raster {
namespace {

/// The library's streams take plain pointers to input that they only read.
std::uint8_t* inputPointer(ByteSpan bytes) {
    return const_cast<std::uint8_t*>(bytes.data());
}

} // namespace

std::size_t deflatedSizeBound(std::size_t size) {
    constexpr std::size_t storedBlockSize = 65'535;
    constexpr std::size_t storedBlockOverhead = 5;
    constexpr std::size_t slack = 512;
    return size + size / 64 + (size / storedBlockSize + 2) * storedBlockOverhead + slack;
}

struct BandDeflater::State {
    SparseDeflater sparse;
    isal_zstream stream{};
    std::vector<std::uint8_t> levelBuffer = std::vector<std::uint8_t>(ISAL_DEF_LVL1_LARGE);
};

BandDeflater::BandDeflater() : m_state(std::make_unique<State>()) {}
BandDeflater::~BandDeflater() = default;

std::size_t BandDeflater::deflate(const SparseBytes& sparse, std::span<std::uint8_t> out) {
    const ByteSpan bytes = sparse.bytes;
    if (sparse.liveSize() <= bytes.size() / 2) return m_state->sparse.deflate(sparse, out);
    return isNoise(bytes, out) ? deflateLiterals(bytes, out) : deflateWithReferences(bytes, out);
}

/// Tries both ways on a small part from the middle.
bool BandDeflater::isNoise(ByteSpan bytes, std::span<std::uint8_t> workspace) {
    constexpr std::size_t sampleSize = std::size_t{32} * 1024;
    constexpr std::size_t blockHeader = 160;
    if (bytes.size() < 2 * sampleSize) return false;
    const ByteSpan sample = bytes.subspan(bytes.size() / 2, sampleSize);
    const std::size_t literal = literalSize(countBytes(sample));
    // With less than two bits a byte there must be long runs of one value.
    if (literal < sampleSize / 4) return false;
    return literal + blockHeader <= deflateWithReferences(sample, workspace);
}

std::size_t BandDeflater::deflateWithReferences(ByteSpan bytes, std::span<std::uint8_t> out) {
    isal_zstream& stream = m_state->stream;
    isal_deflate_stateless_init(&stream);
    // The library leaves what its tables held, and where they held something it shows in the
    // result.
    std::ranges::fill(m_state->levelBuffer, std::uint8_t{0});
    stream.level = 1;
    stream.level_buf = m_state->levelBuffer.data();
    stream.level_buf_size = static_cast<std::uint32_t>(m_state->levelBuffer.size());
    stream.flush = FULL_FLUSH;
    stream.end_of_stream = 0;
    stream.next_in = inputPointer(bytes);
    stream.avail_in = static_cast<std::uint32_t>(bytes.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<std::uint32_t>(out.size());
    if (isal_deflate_stateless(&stream) != COMP_OK || stream.avail_in != 0)
        throw std::length_error("the room for a compressed band is too small");
    return stream.total_out;
}

struct BandInflater::State {
    inflate_state stream;
};

BandInflater::BandInflater() : m_state(std::make_unique<State>()) {}
BandInflater::~BandInflater() = default;

bool BandInflater::inflate(ByteSpan deflated, std::span<std::uint8_t> out) {
    inflate_state& stream = m_state->stream;
    isal_inflate_init(&stream);
    stream.next_in = inputPointer(deflated);
    stream.avail_in = static_cast<std::uint32_t>(deflated.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<std::uint32_t>(out.size());
    if (isal_inflate(&stream) != ISAL_DECOMP_OK) return false;
    // The blocks that end the band hold no bytes, so they may be left when `out` is full.
    if (stream.avail_in != 0 && isal_inflate(&stream) != ISAL_DECOMP_OK) return false;
    return stream.avail_out == 0 && stream.avail_in == 0 && stream.read_in_length == 0 &&
           stream.tmp_in_size == 0 && stream.block_state == ISAL_BLOCK_NEW_HDR &&
           stream.tmp_out_valid == stream.tmp_out_processed;
}

struct ChunkedInflater::State {
    inflate_state stream;
};

ChunkedInflater::ChunkedInflater(std::span<const PngChunk> chunks)
    : m_state(std::make_unique<State>()), m_chunksLeft(chunks) {
    isal_inflate_init(&m_state->stream);
    m_state->stream.crc_flag = ISAL_ZLIB;
    m_state->stream.avail_in = 0;
}

ChunkedInflater::~ChunkedInflater() = default;

bool ChunkedInflater::refill() {
    inflate_state& stream = m_state->stream;
    while (stream.avail_in == 0) {
        if (m_chunksLeft.empty()) return false;
        const ByteSpan data = m_chunksLeft.front().data;
        m_chunksLeft = m_chunksLeft.subspan(1);
        stream.next_in = inputPointer(data);
        stream.avail_in = static_cast<std::uint32_t>(data.size());
    }
    return true;
}

bool ChunkedInflater::read(std::span<std::uint8_t> out) {
    inflate_state& stream = m_state->stream;
    stream.next_out = out.data();
    stream.avail_out = static_cast<std::uint32_t>(out.size());
    while (stream.avail_out != 0) {
        if (stream.block_state == ISAL_BLOCK_FINISH) return false;
        const std::uint32_t before = stream.avail_out;
        const bool hasInput = refill();
        if (isal_inflate(&stream) != ISAL_DECOMP_OK) return false;
        if (!hasInput && stream.avail_out == before) return false;
    }
    return true;
}

bool ChunkedInflater::isAtEnd() {
    inflate_state& stream = m_state->stream;
    std::uint8_t surplus = 0;
    stream.next_out = &surplus;
    stream.avail_out = 1;
    while (stream.block_state != ISAL_BLOCK_FINISH) {
        const bool hasInput = refill();
        if (isal_inflate(&stream) != ISAL_DECOMP_OK || stream.avail_out == 0) return false;
        if (!hasInput && stream.block_state != ISAL_BLOCK_FINISH) return false;
    }
    return stream.avail_out == 1;
}

} // namespace quillabrae::raster
