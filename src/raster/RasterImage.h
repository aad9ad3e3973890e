// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QExplicitlySharedDataPointer>
#include <QImage>
#include <QSizeF>

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillabrae::raster {

/// Whole pixels in memory: RGBA8, premultiplied, row 0 at the top, rows without padding.
///
/// Copies share their pixels until one of them is written. A default-constructed image is null and
/// has no pixels; every other image is at least 1 by 1. `logicalSize` is the size in canvas pixels
/// that was asked for, unrounded.
class RasterImage {
public:
    RasterImage();
    RasterImage(const RasterImage& other);
    RasterImage(RasterImage&& other) noexcept;
    RasterImage& operator=(const RasterImage& other);
    RasterImage& operator=(RasterImage&& other) noexcept;
    ~RasterImage();
    /// A fully transparent image of `pixelWidth` by `pixelHeight`, each at least 1. Null when the
    /// pixels cannot be allocated.
    RasterImage(int pixelWidth, int pixelHeight);
    /// The same with contents left undefined, for callers that write every pixel.
    static RasterImage uninitialized(int pixelWidth, int pixelHeight);
    /// Pixels that nobody holds any more, by the `contentsID` they had; null where their memory has
    /// been given to others.
    static RasterImage takenBack(std::uint64_t contentsID, int pixelWidth, int pixelHeight);
    /// The pixels of a picture of any format, moved out of it where it is the only one to hold
    /// them. Null for a null picture.
    static RasterImage fromQImage(QImage&& picture);

    bool isNull() const { return m_pixels == nullptr; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t stride() const { return static_cast<std::size_t>(m_width) * 4; }
    std::size_t byteCount() const { return stride() * static_cast<std::size_t>(m_height); }

    QSizeF logicalSize() const { return m_logicalSize; }
    void setLogicalSize(QSizeF size) { m_logicalSize = size; }

    std::span<const std::uint8_t> bytes() const;
    const std::uint8_t* row(int y) const;
    /// Row `y` for writing; the pixels stop being shared first.
    std::uint8_t* mutableRow(int y);
    std::span<std::uint8_t> mutableBytes();

    bool sharesPixelsWith(const RasterImage& other) const { return m_pixels == other.m_pixels; }
    /// Tells these pixels, as they are now, from all others there are and were; 0 for a null image.
    std::uint64_t contentsID() const;

    /// A QImage over these very pixels, kept alive by it, for reading.
    QImage toQImage() const;
    /// A QImage over these pixels to paint on, valid while this image is neither copied nor
    /// destroyed.
    QImage paintTarget();

    /// Equal pixel sizes and equal pixels.
    friend bool operator==(const RasterImage& a, const RasterImage& b);

private:
    struct Pixels;

    static RasterImage withPixels(Pixels* pixels, int width, int height);
    void detach();

    QExplicitlySharedDataPointer<Pixels> m_pixels;
    int m_width = 0;
    int m_height = 0;
    QSizeF m_logicalSize;
};

} // namespace quillabrae::raster
