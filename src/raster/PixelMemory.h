// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// Where the pixels of images live. Fresh pages cost several times what copying does, so large
/// blocks are in huge pages, and some of what was freed last is kept for requests of its size until
/// `allocatePixels` grants one of another, more than an eighth of it. Safe on any thread.
namespace quillabrae::raster {

/// The bytes of memory that the machine has; 0 where nobody tells.
std::size_t machineMemory();

/// At most so many bytes of freed memory are kept: a sixteenth of the machine's, and never less
/// than 72 or more than 512 MiB.
std::size_t keptPixelMemory();

/// `byteCount` bytes (more than 0) of undefined contents, aligned as malloc aligns; null when there
/// are none. Freed by `freePixels` with the same count.
std::uint8_t* allocatePixels(std::size_t byteCount);

/// The same, all zero; large blocks take up memory only where they are written.
std::uint8_t* allocateClearPixels(std::size_t byteCount);

/// `contents` tells what the block holds from all that others hold or have held; 0 for what nobody
/// will ask for again.
void freePixels(std::uint8_t* pixels, std::size_t byteCount, std::uint64_t contents = 0);

/// The block that was freed with these `contents` (not 0) and this size, which it holds still; null
/// where it has not been kept. Freed as one from `allocatePixels`.
std::uint8_t* takeBackPixels(std::uint64_t contents, std::size_t byteCount);

/// The requests that the system refuses while this lives, on all threads. A picture that is missing
/// because there was no memory for it looks like any other that is missing: this tells the two
/// apart.
class PixelRefusals {
public:
    PixelRefusals();

    bool any() const;
    /// Throws std::bad_alloc when there were any.
    void throwIfAny() const;

private:
    std::size_t m_before;
};

/// Counts a request as refused; for memory for pixels that was asked for elsewhere.
void countRefusedPixelRequest();

/// Gives the memory that is kept back to the system.
void releaseKeptPixelMemory();

} // namespace quillabrae::raster
