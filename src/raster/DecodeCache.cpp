// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"

#include "raster/AlphaKernels.h"
#include "raster/Parallel.h"
#include "raster/PixelMemory.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <list>
#include <mutex>
#include <unordered_map>
#include <utility>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace quillabrae::raster {
namespace {

thread_local bool isReadOnly = false;
/// Uses of the cache from this one on are of this thread's pass.
thread_local std::size_t passBegin = std::numeric_limits<std::size_t>::max();

constexpr std::size_t greatestDefaultBudget = std::size_t{512} * 1024 * 1024;

std::size_t quarterOfMemory() {
    const std::size_t memory = machineMemory();
    return memory > 0 ? memory / 4 : greatestDefaultBudget;
}

class Cache {
public:
    CroppedImage find(const model::PngBytes::Buffer& bytes) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_index.find(bytes.get());
        if (found == m_index.end()) return {};
        // The address may have been another buffer's before.
        if (found->second->bytes.lock() != bytes) {
            remove(found->second);
            return {};
        }
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        found->second->lastUse = ++m_uses;
        return found->second->picture;
    }

    bool holds(const model::PngBytes::Buffer& bytes) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_index.find(bytes.get());
        return found != m_index.end() && found->second->bytes.lock() == bytes;
    }

    void enter(const model::PngBytes::Buffer& bytes, CroppedImage picture) {
        RasterImage& image = picture.image;
        image.setLogicalSize(QSizeF(image.width(), image.height()));
        const std::lock_guard lock(m_mutex);
        removeDead();
        if (image.byteCount() + sizeOfThisPass(bytes.get()) > m_budget) return;
        if (const auto old = m_index.find(bytes.get()); old != m_index.end()) remove(old->second);
        // What may find no memory comes before anything changes.
        Entries entry;
        entry.push_front({bytes, bytes.get(), std::move(picture), ++m_uses});
        m_index[bytes.get()] = entry.begin();
        m_size += entry.front().picture.image.byteCount();
        m_entries.splice(m_entries.begin(), entry);
        while (m_size > m_budget) remove(std::prev(m_entries.end()));
    }

    void clear() {
        const std::lock_guard lock(m_mutex);
        m_index.clear();
        m_entries.clear();
        m_size = 0;
    }

    void setBudget(std::size_t bytes) {
        const std::lock_guard lock(m_mutex);
        m_budget = std::min(bytes, quarterOfMemory());
        while (m_size > m_budget) remove(std::prev(m_entries.end()));
    }

    std::size_t uses() {
        const std::lock_guard lock(m_mutex);
        return m_uses;
    }

    std::size_t budget() {
        const std::lock_guard lock(m_mutex);
        return m_budget;
    }

    std::size_t size() {
        removeUnheld();
        const std::lock_guard lock(m_mutex);
        return m_size;
    }

    void removeUnheld() {
        const std::lock_guard lock(m_mutex);
        removeDead();
    }

private:
    struct Entry {
        std::weak_ptr<const QByteArray> bytes;
        const QByteArray* key;
        CroppedImage picture;
        std::size_t lastUse;
    };
    using Entries = std::list<Entry>;

    void remove(Entries::iterator entry) {
        m_size -= entry->picture.image.byteCount();
        m_index.erase(entry->key);
        m_entries.erase(entry);
    }

    /// What a pass had better keep for its next time, other than what is to be replaced.
    std::size_t sizeOfThisPass(const QByteArray* replaced) const {
        std::size_t size = 0;
        for (const Entry& entry : m_entries) {
            if (entry.lastUse < passBegin) break;
            if (entry.key != replaced) size += entry.picture.image.byteCount();
        }
        return size;
    }

    void removeDead() {
        for (auto entry = m_entries.begin(); entry != m_entries.end();) {
            const auto candidate = entry++;
            if (candidate->bytes.expired()) remove(candidate);
        }
    }

    std::mutex m_mutex;
    /// Last used first.
    Entries m_entries;
    std::unordered_map<const QByteArray*, Entries::iterator> m_index;
    std::size_t m_size = 0;
    std::size_t m_uses = 0;
    std::size_t m_budget = std::min(greatestDefaultBudget, quarterOfMemory());
};

Cache& cache() {
    static Cache instance;
    return instance;
}

RowRange allRows(const RasterImage& image) {
    return {0, image.height()};
}

/// Whether those rows come back from their encoding as they are: no component above its alpha.
bool surviveEncoding(const RasterImage& image, RowRange rows) {
    if (rows.isEmpty()) return true;
    constexpr int rowsAtOnce = 64;
    std::atomic<bool> survive = true;
    parallelForRowBands(rows.last - rows.first, rowsAtOnce, [&](int first, int last) {
        const std::size_t pixels =
            static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(last - first);
        if (survive && !isPremultiplied(image.row(rows.first + first), pixels)) survive = false;
    });
    return survive;
}

/// The rows of which it is not known that they survive encoding. What is held for `previous` came
/// through it, and the image differs from that in the changed rows alone.
RowRange unprovenRows(const RasterImage& image, const model::PngBytes& previous,
                      RowRange changedRows) {
    const QSize held = cache().find(previous.buffer()).wholeSize;
    if (held != QSize(image.width(), image.height())) return allRows(image);
    return {std::max(changedRows.first, 0), std::min(changedRows.last, image.height())};
}

model::PngBytes entered(const model::PngBytes& bytes, const RasterImage& image, RowRange unproven) {
    if (!isReadOnly && !bytes.isEmpty() && surviveEncoding(image, unproven))
        cache().enter(bytes.buffer(), CroppedImage(image));
    return bytes;
}

} // namespace

RasterImage decodedImage(const model::PngBytes& bytes) {
    if (bytes.isEmpty()) return {};
    const CroppedImage found = cache().find(bytes.buffer());
    if (!found.isNull() && found.isWhole()) return found.image;
    RasterImage image = found.isNull() ? decodePng(bytes) : found.whole();
    if (!isReadOnly && !image.isNull()) cache().enter(bytes.buffer(), CroppedImage(image));
    return image;
}

CroppedImage decodedCrop(const model::PngBytes& bytes) {
    if (bytes.isEmpty()) return {};
    CroppedImage picture = cache().find(bytes.buffer());
    if (!picture.isNull()) return picture;
    picture = decodeCroppedPng(bytes);
    if (!isReadOnly && !picture.isNull()) cache().enter(bytes.buffer(), picture);
    return picture;
}

bool isRemembered(const model::PngBytes& bytes) {
    return cache().holds(bytes.buffer());
}

model::PngBytes encodedImage(const RasterImage& image) {
    return entered(encodePng(image), image, allRows(image));
}

model::PngBytes encodedImage(const RasterImage& image, const model::PngBytes& previous,
                             RowRange changedRows) {
    return entered(encodePng(image, previous, changedRows), image,
                   unprovenRows(image, previous, changedRows));
}

void clearDecodeCache() {
    cache().clear();
}

void returnUnusedMemory() {
    cache().removeUnheld();
    releaseKeptPixelMemory();
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void setDecodeCacheBudget(std::size_t bytes) {
    cache().setBudget(bytes);
}

std::size_t decodeCacheBudget() {
    return cache().budget();
}

std::size_t decodeCacheSize() {
    return cache().size();
}

DecodeCacheReadOnly::DecodeCacheReadOnly() : m_previous(std::exchange(isReadOnly, true)) {}

DecodeCacheReadOnly::~DecodeCacheReadOnly() {
    isReadOnly = m_previous;
}

DecodeCachePass::DecodeCachePass()
    : m_previous(std::exchange(passBegin, std::min(passBegin, cache().uses() + 1))) {}

DecodeCachePass::~DecodeCachePass() {
    passBegin = m_previous;
}

} // namespace quillabrae::raster
