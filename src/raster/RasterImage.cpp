// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/RasterImage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace quillabrae::raster {

struct RasterImage::Pixels {
    explicit Pixels(std::size_t byteCount)
        : data(static_cast<std::uint8_t*>(std::malloc(byteCount))) {
        if (!data) throw std::bad_alloc();
    }
    ~Pixels() { std::free(data); }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;

    std::uint8_t* data;
};

RasterImage RasterImage::uninitialized(int pixelWidth, int pixelHeight) {
    RasterImage image;
    if (pixelWidth < 1 || pixelHeight < 1) return image;
    image.m_width = pixelWidth;
    image.m_height = pixelHeight;
    image.m_logicalSize = QSizeF(pixelWidth, pixelHeight);
    try {
        image.m_pixels = std::make_shared<Pixels>(image.byteCount());
    } catch (const std::bad_alloc&) {
        return {};
    }
    return image;
}

RasterImage::RasterImage(int pixelWidth, int pixelHeight)
    : RasterImage(uninitialized(pixelWidth, pixelHeight)) {
    if (m_pixels) std::memset(m_pixels->data, 0, byteCount());
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
    if (m_pixels.use_count() == 1) return;
    auto copy = std::make_shared<Pixels>(byteCount());
    std::memcpy(copy->data, m_pixels->data, byteCount());
    m_pixels = std::move(copy);
}

QImage RasterImage::toQImage() const {
    if (!m_pixels) return {};
    auto* keepAlive = new std::shared_ptr<Pixels>(m_pixels);
    return QImage(
        std::as_const(m_pixels->data), m_width, m_height, static_cast<qsizetype>(stride()),
        QImage::Format_RGBA8888_Premultiplied,
        [](void* kept) { delete static_cast<std::shared_ptr<Pixels>*>(kept); }, keepAlive);
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
