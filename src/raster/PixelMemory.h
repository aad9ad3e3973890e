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

/// How many requests the system has refused since the program started. A picture that is missing
/// because there was no memory for it looks like any other that is missing: who must tell the two
/// apart compares this before and after. Safe on any thread, as is all of this.
std::size_t refusedPixelRequests();
/// Counts one of those; for memory for pixels that was asked for elsewhere.
void countRefusedPixelRequest();

/// Gives the memory that is kept back to the system.
void releaseKeptPixelMemory();

} // namespace quillabrae::raster
