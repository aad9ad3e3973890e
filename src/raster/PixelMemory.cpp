// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PixelMemory.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <span>
#include <type_traits>

#if defined(__unix__)
#include <unistd.h>
#endif

// A sanitizer watches the borders of what malloc gives, so it gets everything from there.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#define QUILLABRAE_MAPPED_PIXELS 1
#include <sys/mman.h>
#else
#define QUILLABRAE_MAPPED_PIXELS 0
#endif

namespace quillabrae::raster {
namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;
constexpr std::size_t mostKeptMemory = 512 * mebibyte;
constexpr std::size_t hugePageSize = 2 * mebibyte;

#if QUILLABRAE_MAPPED_PIXELS

constexpr std::size_t pageSize = 4096;

/// A kept block that is so many times larger than a request outlives it: the next picture of its
/// size is worth more than what the two add to the peak.
constexpr std::size_t muchLarger = 8;

bool isMapped(std::size_t byteCount) {
    return byteCount >= hugePageSize;
}

std::size_t mappedSize(std::size_t byteCount) {
    return (byteCount + pageSize - 1) / pageSize * pageSize;
}

void unmap(std::uint8_t* pixels, std::size_t byteCount) {
    munmap(pixels, mappedSize(byteCount));
}

/// Blocks that were freed last, for requests of their size. Asks for no memory: pixels are freed
/// where nothing may fail, and when there is least of it.
class KeptBlocks {
public:
    /// A block of that size. Where there is none, makes room for a new one: memory of another size
    /// would only add to the peak.
    std::uint8_t* take(std::size_t byteCount) {
        const std::size_t size = mappedSize(byteCount);
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(blocks(), size, &Block::size);
        if (found == blocks().end()) {
            giveBack([&](const Block& block) { return block.size / muchLarger < size; });
            return nullptr;
        }
        return take(found);
    }

    /// The block that holds `contents`.
    std::uint8_t* takeBack(std::uint64_t contents, std::size_t byteCount) {
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(blocks(), contents, &Block::contents);
        const bool isKept = found != blocks().end() && found->size == mappedSize(byteCount);
        return isKept ? take(found) : nullptr;
    }

    void keep(std::uint8_t* pixels, std::size_t byteCount, std::uint64_t contents) {
        const std::size_t size = mappedSize(byteCount);
        const std::size_t most = keptPixelMemory();
        if (size > most) return unmap(pixels, byteCount);
        const std::lock_guard lock(m_mutex);
        std::size_t total = size;
        for (const Block& block : blocks()) total += block.size;
        // The oldest go first.
        giveBack([&](const Block& block) {
            if (total <= most) return false;
            total -= block.size;
            return true;
        });
        m_blocks[m_count++] = {pixels, size, contents};
    }

    /// Whether there was anything to give back.
    bool clear() {
        const std::lock_guard lock(m_mutex);
        return giveBack([](const Block&) { return true; }) > 0;
    }

private:
    struct Block {
        std::uint8_t* pixels = nullptr;
        std::size_t size = 0;
        std::uint64_t contents = 0;
    };
    using Blocks = std::span<Block>;

    Blocks blocks() { return Blocks(m_blocks).first(m_count); }

    std::uint8_t* take(Blocks::iterator block) {
        std::uint8_t* const pixels = block->pixels;
        std::move(block + 1, blocks().end(), block);
        --m_count;
        return pixels;
    }

    /// Asks about each block once, the oldest first; how many went.
    template <typename Predicate>
    std::size_t giveBack(Predicate isUnwanted) {
        const Blocks all = blocks();
        const auto kept = std::remove_if(all.begin(), all.end(), [&](const Block& block) {
            if (!isUnwanted(block)) return false;
            unmap(block.pixels, block.size);
            return true;
        });
        const auto gone = static_cast<std::size_t>(all.end() - kept);
        m_count -= gone;
        return gone;
    }

    std::mutex m_mutex;
    /// Freed last comes last. There are no more than that: each takes a huge page or more.
    std::array<Block, mostKeptMemory / hugePageSize> m_blocks;
    std::size_t m_count = 0;
};

// Images may outlive it among objects that end with the program.
static_assert(std::is_trivially_destructible_v<KeptBlocks>);
constinit KeptBlocks keptBlocks;

/// Zero pages that begin on a huge page's border; null when the system has none.
std::uint8_t* mapFresh(std::size_t byteCount) {
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

/// The same, at the cost of what is kept.
std::uint8_t* map(std::size_t byteCount) {
    std::uint8_t* const pixels = mapFresh(byteCount);
    return pixels == nullptr && keptBlocks.clear() ? mapFresh(byteCount) : pixels;
}

#endif

std::atomic<std::size_t> refusedRequests = 0;

std::uint8_t* counted(std::uint8_t* pixels) {
    if (pixels == nullptr) countRefusedPixelRequest();
    return pixels;
}

} // namespace

std::size_t machineMemory() {
#if defined(_SC_PHYS_PAGES) && defined(_SC_PAGESIZE)
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long bytesOfPage = sysconf(_SC_PAGESIZE);
    if (pages > 0 && bytesOfPage > 0)
        return static_cast<std::size_t>(pages) * static_cast<std::size_t>(bytesOfPage);
#endif
    return 0;
}

std::size_t keptPixelMemory() {
    static const std::size_t most = std::clamp(machineMemory() / 16, 72 * mebibyte, mostKeptMemory);
    return most;
}

std::uint8_t* allocatePixels(std::size_t byteCount) {
#if QUILLABRAE_MAPPED_PIXELS
    if (isMapped(byteCount)) {
        std::uint8_t* const kept = keptBlocks.take(byteCount);
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

void freePixels(std::uint8_t* pixels, [[maybe_unused]] std::size_t byteCount,
                [[maybe_unused]] std::uint64_t contents) {
#if QUILLABRAE_MAPPED_PIXELS
    if (isMapped(byteCount)) return keptBlocks.keep(pixels, byteCount, contents);
#endif
    std::free(pixels);
}

std::uint8_t* takeBackPixels([[maybe_unused]] std::uint64_t contents,
                             [[maybe_unused]] std::size_t byteCount) {
#if QUILLABRAE_MAPPED_PIXELS
    if (isMapped(byteCount)) return keptBlocks.takeBack(contents, byteCount);
#endif
    return nullptr;
}

PixelRefusals::PixelRefusals() : m_before(refusedRequests.load()) {}

bool PixelRefusals::any() const {
    return refusedRequests.load() != m_before;
}

void PixelRefusals::throwIfAny() const {
    if (any()) throw std::bad_alloc();
}

void countRefusedPixelRequest() {
    ++refusedRequests;
}

void releaseKeptPixelMemory() {
#if QUILLABRAE_MAPPED_PIXELS
    keptBlocks.clear();
#endif
}

} // namespace quillabrae::raster
