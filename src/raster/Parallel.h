// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <memory>
#include <type_traits>

namespace quillabrae::raster {

namespace detail {
using IndexedCall = void (*)(void* context, int index);
void runParallel(int count, IndexedCall call, void* context);
} // namespace detail

/// Calls `fn(0)` to `fn(count - 1)`, each once, in any order, on this thread and on the idle ones
/// of a small pool, and returns when all calls have returned. Whatever the calls wrote is visible
/// to the caller. The first exception is rethrown here; calls not yet begun are then left out. A
/// call made from within another's `fn` runs on its own thread alone.
template <typename Fn>
void parallelFor(int count, Fn&& fn) {
    using Callable = std::remove_reference_t<Fn>;
    detail::runParallel(
        count, [](void* context, int index) { (*static_cast<Callable*>(context))(index); },
        const_cast<std::remove_const_t<Callable>*>(std::addressof(fn)));
}

/// Cuts `rows` rows into bands of `rowsPerBand` (the last may be shorter; at least 1) and calls
/// `fn(first, last)` for each as `parallelFor` does; `last` is one past the band's last row.
template <typename Fn>
void parallelForRowBands(int rows, int rowsPerBand, Fn&& fn) {
    const int step = std::max(rowsPerBand, 1);
    const int bands = rows / step + (rows % step != 0 ? 1 : 0);
    parallelFor(bands, [&](int band) {
        const int first = band * step;
        fn(first, first + std::min(step, rows - first));
    });
}

/// How many threads a `parallelFor` made here may use, the calling one included.
int parallelThreadCount();

/// While alive, keeps calls of `parallelFor` that this thread makes to at most `threads` threads
/// (at least 1). For measurements, and for tests that the result does not depend on the number.
class ParallelThreadLimit {
public:
    explicit ParallelThreadLimit(int threads);
    ~ParallelThreadLimit();
    ParallelThreadLimit(const ParallelThreadLimit&) = delete;
    ParallelThreadLimit& operator=(const ParallelThreadLimit&) = delete;

private:
    int m_previous;
};

} // namespace quillabrae::raster
