// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace quillabrae::tests {

/// While alive, refuses one request for memory of the whole process: the `number`th, from 1, of at
/// least `leastBytes` since it was made. Looks at malloc and its like, operator new and mmap; the
/// latter alone is not looked at where a library asks through a name of its own. Not in a build
/// with sanitizers, which have allocators of their own.
class MemoryRefusal {
public:
    MemoryRefusal(std::size_t number, std::size_t leastBytes);
    ~MemoryRefusal();
    MemoryRefusal(const MemoryRefusal&) = delete;
    MemoryRefusal& operator=(const MemoryRefusal&) = delete;

    /// Whether there were so many requests.
    bool hasHappened() const;

    static bool isAvailable();
};

} // namespace quillabrae::tests
