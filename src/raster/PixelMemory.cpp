// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PixelMemory.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

// A sanitizer watches the borders of what malloc gives, so it gets everything from there.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#define QUILLABRAE_MAPPED_PIXELS 1
#include <sys/mman.h>
#else
#define QUILLABRAE_MAPPED_PIXELS 0
#endif

namespace quillabrae::raster {
namespace {

constexpr std::size_t hugePageSize = std::size_t{2} * 1024 * 1024;

#if QUILLABRAE_MAPPED_PIXELS

constexpr std::size_t pageSize = 4096;

bool isMapped(std::size_t byteCount) {
    return byteCount >= hugePageSize;
}

std::size_t mappedSize(std::size_t byteCount) {
    return (byteCount + pageSize - 1) / pageSize * pageSize;
}

/// Zero pages that begin on a huge page's border.
std::uint8_t* map(std::size_t byteCount) {
    const std::size_t size = mappedSize(byteCount);
    void* const block = mmap(nullptr, size + hugePageSize, PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (block == MAP_FAILED) return nullptr;
    auto* const start = static_cast<std::uint8_t*>(block);
    const std::size_t past = reinterpret_cast<std::uintptr_t>(start) % hugePageSize;
    const std::size_t head = past == 0 ? 0 : hugePageSize - past;
    if (head != 0) munmap(start, head);
    munmap(start + head + size, hugePageSize - head);
    madvise(start + head, size, MADV_HUGEPAGE);
    return start + head;
}

void unmap(std::uint8_t* pixels, std::size_t byteCount) {
    munmap(pixels, mappedSize(byteCount));
}

/// Blocks that were freed last, for requests of their size.
class KeptBlocks {
public:
    std::uint8_t* take(std::size_t byteCount) {
        const std::lock_guard lock(m_mutex);
        for (auto block = m_blocks.begin(); block != m_blocks.end(); ++block) {
            if (mappedSize(block->byteCount) != mappedSize(byteCount)) continue;
            std::uint8_t* const pixels = block->pixels;
            m_size -= mappedSize(byteCount);
            m_blocks.erase(block);
            return pixels;
        }
        // Memory of another size than is wanted now would only add to the peak.
        unmapAll();
        return nullptr;
    }

    void keep(std::uint8_t* pixels, std::size_t byteCount) {
        const std::size_t size = mappedSize(byteCount);
        const std::lock_guard lock(m_mutex);
        if (size > keptPixelMemory) return unmap(pixels, byteCount);
        if (m_size + size > keptPixelMemory) unmapAll();
        m_blocks.push_back({pixels, byteCount});
        m_size += size;
    }

    void clear() {
        const std::lock_guard lock(m_mutex);
        unmapAll();
    }

private:
    struct Block {
        std::uint8_t* pixels;
        std::size_t byteCount;
    };

    void unmapAll() {
        for (const Block& block : m_blocks) unmap(block.pixels, block.byteCount);
        m_blocks.clear();
        m_size = 0;
    }

    std::mutex m_mutex;
    std::vector<Block> m_blocks;
    std::size_t m_size = 0;
};

KeptBlocks& keptBlocks() {
    // Never destroyed: images may outlive it among objects that end with the program.
    static auto& blocks = *std::make_unique<KeptBlocks>().release();
    return blocks;
}

#endif

std::atomic<std::size_t> refusedRequests = 0;

std::uint8_t* counted(std::uint8_t* pixels) {
    if (pixels == nullptr) countRefusedPixelRequest();
    return pixels;
}

} // namespace

std::uint8_t* allocatePixels(std::size_t byteCount) {
#if QUILLABRAE_MAPPED_PIXELS
    if (isMapped(byteCount)) {
        std::uint8_t* const kept = keptBlocks().take(byteCount);
        return kept != nullptr ? kept : counted(map(byteCount));
    }
#endif
    return counted(static_cast<std::uint8_t*>(std::malloc(byteCount)));
}

std::uint8_t* allocateClearPixels(std::size_t byteCount) {
#if QUILLABRAE_MAPPED_PIXELS
    if (isMapped(byteCount)) return counted(map(byteCount));
#endif
    return counted(static_cast<std::uint8_t*>(std::calloc(byteCount, 1)));
}

void freePixels(std::uint8_t* pixels, std::size_t byteCount) {
#if QUILLABRAE_MAPPED_PIXELS
    if (isMapped(byteCount)) return keptBlocks().keep(pixels, byteCount);
#endif
    static_cast<void>(byteCount);
    std::free(pixels);
}

std::size_t refusedPixelRequests() {
    return refusedRequests.load();
}

void countRefusedPixelRequest() {
    ++refusedRequests;
}

void releaseKeptPixelMemory() {
#if QUILLABRAE_MAPPED_PIXELS
    keptBlocks().clear();
#endif
}

} // namespace quillabrae::raster
