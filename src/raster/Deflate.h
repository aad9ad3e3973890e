// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngChunks.h"
#include "raster/SparseBytes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// Raw deflate, fast, over ISA-L and our own coders for noise and for mostly nothing.
namespace quillabrae::raster {

/// The most bytes that `deflateBand` makes of that many.
std::size_t deflatedSizeBound(std::size_t size);

/// Compresses bytes into a run of deflate blocks, none of them final, that ends on a byte boundary.
/// Each call starts afresh: the result depends on the bytes and their live ranges alone.
class BandDeflater {
public:
    BandDeflater();
    ~BandDeflater();
    BandDeflater(const BandDeflater&) = delete;
    BandDeflater& operator=(const BandDeflater&) = delete;

    /// Returns the bytes written to `out`, which has room for
    /// `deflatedSizeBound(bytes.bytes.size())`.
    std::size_t deflate(const SparseBytes& bytes, std::span<std::uint8_t> out);

private:
    struct State;

    std::size_t deflateWithReferences(ByteSpan bytes, std::span<std::uint8_t> out);
    bool isNoise(ByteSpan bytes, std::span<std::uint8_t> workspace);

    std::unique_ptr<State> m_state;
};

/// Inflates what `BandDeflater` makes.
class BandInflater {
public:
    BandInflater();
    ~BandInflater();
    BandInflater(const BandInflater&) = delete;
    BandInflater& operator=(const BandInflater&) = delete;

    /// Whether `deflated` is a run of whole deflate blocks, none of them final, that ends on a byte
    /// boundary, looks back at nothing before it and holds exactly as many bytes as `out`, which is
    /// then filled.
    bool inflate(ByteSpan deflated, std::span<std::uint8_t> out);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// Inflates a zlib stream that is spread over chunks, piece by piece.
class ChunkedInflater {
public:
    explicit ChunkedInflater(std::span<const PngChunk> chunks);
    ~ChunkedInflater();
    ChunkedInflater(const ChunkedInflater&) = delete;
    ChunkedInflater& operator=(const ChunkedInflater&) = delete;

    /// Fills all of `out`; false when the stream is damaged or ends before.
    bool read(std::span<std::uint8_t> out);
    /// Whether the stream ends here, with the right checksum.
    bool isAtEnd();

private:
    struct State;
    bool refill();

    std::unique_ptr<State> m_state;
    std::span<const PngChunk> m_chunksLeft;
};

} // namespace quillabrae::raster
