// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Parallel.h"
#include "raster/PngBandReader.h"
#include "raster/PngDecoder.h"

#include <QRect>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <optional>
#include <vector>

namespace quillabrae::raster {
namespace {

/// Bands that are looked at first, for whether all are worth to be.
constexpr std::size_t sampleCount = 8;

/// The live columns of a band.
struct Part {
    bool isRead = false;
    ColumnRange columns;
    /// Null without columns.
    RasterImage pixels;
};

/// Reads the bands of one PNG, each into pixels of its own as wide as what it shows, until that
/// turns out to be more than half of the picture.
class CroppedReading {
public:
    CroppedReading(const PngLayout& layout, const PngBands& bands)
        : m_layout(layout), m_bands(bands), m_parts(bands.checksums.size()) {}

    /// Null as soon as a band is not what the index says.
    CroppedImage read() {
        readSample();
        if (m_liveBytes <= m_sampledBytes / 2) readAll();
        if (!m_isGood) return {};
        if (m_liveBytes > wholeBytes() / 2 || m_readCount < m_parts.size()) return whole();
        const QRect live = liveRect();
        if (live.isEmpty()) return {RasterImage(1, 1), QPoint(0, 0), wholeSize()};
        const auto pixels =
            static_cast<std::size_t>(live.width()) * static_cast<std::size_t>(live.height());
        return 4 * pixels > wholeBytes() / 2 ? whole() : cropped(live);
    }

private:
    std::size_t rowBytes() const { return m_layout.header.rowByteCount(); }
    std::size_t wholeBytes() const { return rowBytes() * m_layout.header.height; }
    QSize wholeSize() const {
        return {static_cast<int>(m_layout.header.width), static_cast<int>(m_layout.header.height)};
    }
    BandRows rowsOf(std::size_t band) const { return rowsOfBand(m_layout.header, m_bands, band); }

    void readSample() {
        const std::size_t count = std::min(sampleCount, m_parts.size());
        const auto sampled = [&](std::size_t i) { return i * m_parts.size() / count; };
        for (std::size_t i = 0; i < count; ++i)
            m_sampledBytes += rowsOf(sampled(i)).count * rowBytes();
        parallelFor(static_cast<int>(count),
                    [&](int i) { readPart(sampled(static_cast<std::size_t>(i))); });
    }

    void readAll() {
        parallelFor(static_cast<int>(m_parts.size()), [&](int i) {
            const auto band = static_cast<std::size_t>(i);
            if (!m_parts[band].isRead && m_liveBytes <= wholeBytes() / 2) readPart(band);
        });
    }

    void readPart(std::size_t band) {
        if (!m_isGood) return;
        Part& part = m_parts[band];
        part.isRead = true;
        ++m_readCount;
        const std::optional<SparseBand> filtered = readSparseBand(m_layout, m_bands, band);
        if (!filtered) {
            m_isGood = false;
            return;
        }
        part.columns = liveColumns(*filtered);
        if (part.columns.isEmpty()) return;
        part.pixels = RasterImage::uninitialized(static_cast<int>(part.columns.size()),
                                                 static_cast<int>(rowsOf(band).count));
        if (part.pixels.isNull()) {
            m_isGood = false;
            return;
        }
        expandColumns(*filtered, part.columns, part.pixels.mutableRow(0), part.pixels.stride());
        m_liveBytes += part.pixels.byteCount();
    }

    /// Around all that the bands show, to whole bands.
    QRect liveRect() const {
        QRect live;
        for (std::size_t band = 0; band < m_parts.size(); ++band) {
            const ColumnRange& columns = m_parts[band].columns;
            if (columns.isEmpty()) continue;
            const BandRows rows = rowsOf(band);
            live |= QRect(static_cast<int>(columns.first), static_cast<int>(rows.first),
                          static_cast<int>(columns.size()), static_cast<int>(rows.count));
        }
        return live;
    }

    CroppedImage cropped(const QRect& live) {
        RasterImage image = RasterImage::uninitialized(live.width(), live.height());
        if (image.isNull()) return {};
        for (std::size_t band = 0; band < m_parts.size(); ++band) {
            const int top = static_cast<int>(rowsOf(band).first) - live.top();
            if (top >= 0 && top < live.height())
                put(band, image.mutableRow(top), image.stride(),
                    static_cast<std::size_t>(live.left()));
        }
        return {std::move(image), live.topLeft(), wholeSize()};
    }

    /// What has been read already, and the rest.
    CroppedImage whole() {
        RasterImage image = RasterImage::uninitialized(wholeSize().width(), wholeSize().height());
        if (image.isNull()) return {};
        std::uint8_t* const pixels = image.mutableRow(0);
        const std::size_t stride = image.stride();
        parallelFor(static_cast<int>(m_parts.size()), [&](int i) {
            const auto band = static_cast<std::size_t>(i);
            std::uint8_t* const target = pixels + rowsOf(band).first * stride;
            if (m_parts[band].isRead) return put(band, target, stride, 0);
            if (!m_isGood) return;
            const std::optional<FilteredBand> filtered = readBand(m_layout, m_bands, band);
            if (filtered)
                expandBand(*filtered, target, stride);
            else
                m_isGood = false;
        });
        return m_isGood ? CroppedImage(std::move(image)) : CroppedImage();
    }

    /// Writes the rows of a band, which begin with column `firstColumn`.
    void put(std::size_t band, std::uint8_t* rows, std::size_t stride, std::size_t firstColumn) {
        const std::size_t count = rowsOf(band).count;
        const Part& part = m_parts[band];
        if (part.columns.isEmpty()) {
            std::memset(rows, 0, count * stride);
            return;
        }
        const std::size_t begin = 4 * (part.columns.first - firstColumn);
        const std::size_t size = part.pixels.stride();
        for (std::size_t y = 0; y < count; ++y, rows += stride) {
            std::memset(rows, 0, begin);
            std::memcpy(rows + begin, part.pixels.row(static_cast<int>(y)), size);
            std::memset(rows + begin + size, 0, stride - begin - size);
        }
    }

    const PngLayout& m_layout;
    const PngBands& m_bands;
    std::vector<Part> m_parts;
    std::size_t m_sampledBytes = 0;
    std::atomic<std::size_t> m_liveBytes = 0;
    std::atomic<std::size_t> m_readCount = 0;
    std::atomic<bool> m_isGood = true;
};

} // namespace

CroppedImage decodeCroppedPngBands(const PngLayout& layout, const PngBands& bands) {
    if (!layout.imageData.front().hasValidCrc() || !layout.imageData.back().hasValidCrc())
        return {};
    return CroppedReading(layout, bands).read();
}

} // namespace quillabrae::raster
