// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/MemoryRefusal.h"

#include <atomic>
#include <cerrno>

#if defined(__linux__) && defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__)
#define QUILLABRAE_REFUSES_MEMORY 1
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>
#else
#define QUILLABRAE_REFUSES_MEMORY 0
#endif

namespace {

std::atomic<std::size_t> leastRefusedBytes = 0;
std::atomic<long> requestsToGo = 0;
std::atomic<bool> isWatching = false;

} // namespace

#if QUILLABRAE_REFUSES_MEMORY

namespace {

bool isRefused(std::size_t bytes) {
    if (!isWatching.load(std::memory_order_relaxed) || bytes < leastRefusedBytes) return false;
    if (--requestsToGo != 0) return false;
    errno = ENOMEM;
    return true;
}

} // namespace

// What the C library defines under these names stays there under the others.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming, cert-dcl37-c,
// cert-dcl51-cpp)
extern "C" {
void* __libc_malloc(std::size_t bytes) noexcept;
void* __libc_calloc(std::size_t count, std::size_t bytes) noexcept;
void* __libc_realloc(void* block, std::size_t bytes) noexcept;

void* malloc(std::size_t bytes) noexcept {
    return isRefused(bytes) ? nullptr : __libc_malloc(bytes);
}

void* calloc(std::size_t count, std::size_t bytes) noexcept {
    return isRefused(count * bytes) ? nullptr : __libc_calloc(count, bytes);
}

void* realloc(void* block, std::size_t bytes) noexcept {
    return isRefused(bytes) ? nullptr : __libc_realloc(block, bytes);
}

void* mmap(void* place, std::size_t bytes, int protection, int flags, int file,
           off_t offset) noexcept {
    if ((flags & MAP_ANONYMOUS) != 0 && isRefused(bytes)) return MAP_FAILED;
    return reinterpret_cast<void*>(
        syscall(SYS_mmap, place, bytes, protection, flags, file, offset));
}
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming, cert-dcl37-c,
// cert-dcl51-cpp)

#endif

namespace quillabrae::tests {

MemoryRefusal::MemoryRefusal(std::size_t number, std::size_t leastBytes) {
    leastRefusedBytes = leastBytes;
    requestsToGo = static_cast<long>(number);
    isWatching = true;
}

MemoryRefusal::~MemoryRefusal() {
    isWatching = false;
}

bool MemoryRefusal::hasHappened() const {
    return requestsToGo <= 0;
}

bool MemoryRefusal::isAvailable() {
    return QUILLABRAE_REFUSES_MEMORY != 0;
}

} // namespace quillabrae::tests
