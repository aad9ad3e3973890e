// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/RasterImage.h"

#include "raster/Parallel.h"
#include "raster/PixelMemory.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>
#include <utility>

namespace quillabrae::raster {

/// A block of pixel memory, or the memory of a picture that was handed over.
struct RasterImage::Pixels : QSharedData {
    Pixels(std::uint8_t* memory, std::size_t size) : data(memory), byteCount(size) {
        if (data == nullptr) throw std::bad_alloc();
    }
    explicit Pixels(QImage&& handedOver) : picture(std::move(handedOver)), data(picture.bits()) {
        if (data == nullptr) throw std::bad_alloc();
    }
    ~Pixels() {
        if (byteCount != 0) freePixels(data, byteCount, contentsID);
    }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;

    QImage picture;
    std::uint8_t* data;
    std::size_t byteCount = 0;
    /// 0 as long as nobody has asked for it since the pixels were last written.
    std::atomic<std::uint64_t> contentsID = 0;
};

namespace {

std::uint64_t newContentsID() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

std::size_t byteCountOf(int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
}

/// By several threads where it takes them long: each has the system clear pages for it.
void copyBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t count) {
    constexpr std::size_t piece = std::size_t{4} * 1024 * 1024;
    parallelFor(static_cast<int>((count + piece - 1) / piece), [&](int index) {
        const std::size_t begin = static_cast<std::size_t>(index) * piece;
        std::memcpy(to + begin, from + begin, std::min(piece, count - begin));
    });
}

} // namespace

RasterImage::RasterImage() = default;
RasterImage::RasterImage(const RasterImage& other) = default;
RasterImage::RasterImage(RasterImage&& other) noexcept = default;
RasterImage& RasterImage::operator=(const RasterImage& other) = default;
RasterImage& RasterImage::operator=(RasterImage&& other) noexcept = default;
RasterImage::~RasterImage() = default;

RasterImage RasterImage::withPixels(Pixels* pixels, int width, int height) {
    RasterImage image;
    image.m_pixels.reset(pixels);
    image.m_width = width;
    image.m_height = height;
    image.m_logicalSize = QSizeF(width, height);
    return image;
}

RasterImage RasterImage::uninitialized(int pixelWidth, int pixelHeight) {
    if (pixelWidth < 1 || pixelHeight < 1) return {};
    const std::size_t size = byteCountOf(pixelWidth, pixelHeight);
    try {
        return withPixels(new Pixels(allocatePixels(size), size), pixelWidth, pixelHeight);
    } catch (const std::bad_alloc&) {
        countRefusedPixelRequest();
        return {};
    }
}

RasterImage::RasterImage(int pixelWidth, int pixelHeight) {
    if (pixelWidth < 1 || pixelHeight < 1) return;
    const std::size_t size = byteCountOf(pixelWidth, pixelHeight);
    try {
        *this = withPixels(new Pixels(allocateClearPixels(size), size), pixelWidth, pixelHeight);
    } catch (const std::bad_alloc&) {
        countRefusedPixelRequest();
    }
}

RasterImage RasterImage::takenBack(std::uint64_t contentsID, int pixelWidth, int pixelHeight) {
    if (contentsID == 0 || pixelWidth < 1 || pixelHeight < 1) return {};
    const std::size_t size = byteCountOf(pixelWidth, pixelHeight);
    std::uint8_t* const memory = takeBackPixels(contentsID, size);
    if (memory == nullptr) return {};
    try {
        return withPixels(new Pixels(memory, size), pixelWidth, pixelHeight);
    } catch (const std::bad_alloc&) {
        freePixels(memory, size, contentsID);
        return {};
    }
}

RasterImage RasterImage::fromQImage(QImage&& picture) {
    if (picture.isNull()) return {};
    picture.convertTo(QImage::Format_RGBA8888_Premultiplied);
    const int width = picture.width();
    const int height = picture.height();
    if (picture.isNull()) countRefusedPixelRequest();
    if (picture.isNull() || picture.bytesPerLine() != qsizetype{4} * width) return {};
    try {
        return withPixels(new Pixels(std::move(picture)), width, height);
    } catch (const std::bad_alloc&) {
        countRefusedPixelRequest();
        return {};
    }
}

std::span<const std::uint8_t> RasterImage::bytes() const {
    if (!m_pixels) return {};
    return {m_pixels->data, byteCount()};
}

const std::uint8_t* RasterImage::row(int y) const {
    return m_pixels->data + static_cast<std::size_t>(y) * stride();
}

std::uint8_t* RasterImage::mutableRow(int y) {
    detach();
    return m_pixels->data + static_cast<std::size_t>(y) * stride();
}

std::span<std::uint8_t> RasterImage::mutableBytes() {
    if (!m_pixels) return {};
    detach();
    return {m_pixels->data, byteCount()};
}

void RasterImage::detach() {
    // What another thread read through its copy, it read before we write.
    if (m_pixels->ref.loadAcquire() == 1) {
        if (m_pixels->contentsID.load(std::memory_order_relaxed) != 0) m_pixels->contentsID = 0;
        return;
    }
    QExplicitlySharedDataPointer copy(new Pixels(allocatePixels(byteCount()), byteCount()));
    copyBytes(m_pixels->data, copy->data, byteCount());
    m_pixels.swap(copy);
}

std::uint64_t RasterImage::contentsID() const {
    if (!m_pixels) return 0;
    std::uint64_t id = 0;
    const std::uint64_t fresh = newContentsID();
    return m_pixels->contentsID.compare_exchange_strong(id, fresh) ? fresh : id;
}

QImage RasterImage::toQImage() const {
    if (!m_pixels) return {};
    auto* keepAlive = new QExplicitlySharedDataPointer<Pixels>(m_pixels);
    return QImage(
        std::as_const(m_pixels->data), m_width, m_height, static_cast<qsizetype>(stride()),
        QImage::Format_RGBA8888_Premultiplied,
        [](void* kept) { delete static_cast<QExplicitlySharedDataPointer<Pixels>*>(kept); },
        keepAlive);
}

QImage RasterImage::paintTarget() {
    if (!m_pixels) return {};
    detach();
    return QImage(m_pixels->data, m_width, m_height, static_cast<qsizetype>(stride()),
                  QImage::Format_RGBA8888_Premultiplied);
}

bool operator==(const RasterImage& a, const RasterImage& b) {
    if (a.m_width != b.m_width || a.m_height != b.m_height) return false;
    return a.m_pixels == b.m_pixels || std::ranges::equal(a.bytes(), b.bytes());
}

} // namespace quillabrae::raster
