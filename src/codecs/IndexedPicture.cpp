// SPDX-License-Identifier: GPL-3.0-or-later
// The palette begins as a median cut's and is then moved: each colour to the mean of the pixels it
// is nearest to, a few times. Dithering is Floyd's and Steinberg's, row by row to and fro: a part
// of a pixel's error is handed to the right (7/16), below left (3/16), below (5/16) and below right
// (1/16).
#include "codecs/IndexedPicture.h"

#include <leptonica/allheaders.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <unordered_map>

namespace quillabrae::codecs {
namespace {

std::uint32_t packed(const std::uint8_t* pixel) {
    return (std::uint32_t{pixel[0]} << 16U) | (std::uint32_t{pixel[1]} << 8U) | pixel[2];
}

/// Nothing for a picture of more colours than a palette holds.
std::optional<IndexedPicture> withItsOwnColors(const OpaquePicture& picture) {
    IndexedPicture indexed;
    indexed.width = picture.width;
    indexed.pixels.reserve(picture.pixels.size() / 4);
    std::unordered_map<std::uint32_t, std::uint8_t> numbers;
    std::uint32_t last = ~packed(picture.pixels.data());
    for (std::size_t at = 0; at < picture.pixels.size(); at += 4) {
        const std::uint8_t* pixel = picture.pixels.data() + at;
        const std::uint32_t color = packed(pixel);
        if (color == last) {
            indexed.pixels.push_back(indexed.pixels.back());
            continue;
        }
        last = color;
        const std::size_t next = numbers.size();
        const auto [entry, isNew] = numbers.try_emplace(color, static_cast<std::uint8_t>(next));
        if (isNew && next == paletteSize) return std::nullopt;
        if (isNew) indexed.palette.at(next) = {pixel[0], pixel[1], pixel[2]};
        indexed.pixels.push_back(entry->second);
    }
    return indexed;
}

struct PixReleaser {
    void operator()(PIX* pix) const { pixDestroy(&pix); }
};
using Pix = std::unique_ptr<PIX, PixReleaser>;

/// The picture at every `step`th pixel of every `step`th row.
Pix samplesOf(const OpaquePicture& picture, int step) {
    constexpr int bitsForEachPixel = 32;
    const int width = (picture.width + step - 1) / step;
    const int height = (picture.height + step - 1) / step;
    Pix pix(pixCreateNoInit(width, height, bitsForEachPixel));
    if (!pix) throw CodecError("no memory");
    const auto wordsPerLine = static_cast<std::ptrdiff_t>(pixGetWpl(pix.get()));
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* from = picture.row(y * step);
        l_uint32* line = pixGetData(pix.get()) + y * wordsPerLine;
        for (int x = 0; x < width; ++x, from += std::ptrdiff_t{4} * step)
            line[x] = packed(from) << 8U;
    }
    return pix;
}

/// How far apart, in pixels, samples lie of which a hundred thousand or so are enough.
int sampleStep(const OpaquePicture& picture) {
    constexpr double enough = 100000.0;
    const double pixels = static_cast<double>(picture.width) * picture.height;
    return std::max(1, static_cast<int>(std::sqrt(pixels / enough)));
}

/// The nearest colour of a palette, by the square of the distance in RGB. Remembered for each cube
/// of colours that agree but for their last bit.
class NearestColor {
public:
    explicit NearestColor(const std::array<PaletteColor, paletteSize>& palette)
        : m_known(std::size_t{1} << (3 * bits), unknown) {
        for (std::size_t i = 0; i < palette.size(); ++i) {
            m_red.at(i) = palette.at(i).red;
            m_green.at(i) = palette.at(i).green;
            m_blue.at(i) = palette.at(i).blue;
        }
    }

    std::uint8_t of(int red, int green, int blue) {
        constexpr int lost = 8 - bits;
        const auto cube = static_cast<std::size_t>(((red >> lost) << (2 * bits)) |
                                                   ((green >> lost) << bits) | (blue >> lost));
        if (m_known[cube] == unknown) m_known[cube] = search(red, green, blue);
        return static_cast<std::uint8_t>(m_known[cube]);
    }

private:
    static constexpr int bits = 7;
    static constexpr std::int16_t unknown = -1;

    std::int16_t search(int red, int green, int blue) const {
        std::array<int, paletteSize> distances{};
        for (std::size_t i = 0; i < distances.size(); ++i) {
            const int r = m_red[i] - red;
            const int g = m_green[i] - green;
            const int b = m_blue[i] - blue;
            distances[i] = r * r + g * g + b * b;
        }
        return static_cast<std::int16_t>(std::ranges::min_element(distances) - distances.begin());
    }

    std::array<int, paletteSize> m_red{};
    std::array<int, paletteSize> m_green{};
    std::array<int, paletteSize> m_blue{};
    std::vector<std::int16_t> m_known;
};

using Palette = std::array<PaletteColor, paletteSize>;

Palette medianCut(PIX* samples) {
    constexpr int noDithering = 0;
    constexpr int bitsForEachNumber = 8;
    constexpr int significantBits = 6;
    constexpr int noSubsampling = 1;
    constexpr int noSearchForGrey = 0;
    const Pix quantized(pixMedianCutQuantGeneral(samples, noDithering, bitsForEachNumber,
                                                 paletteSize, significantBits, noSubsampling,
                                                 noSearchForGrey));
    PIXCMAP* map = quantized ? pixGetColormap(quantized.get()) : nullptr;
    const int count = map != nullptr ? pixcmapGetCount(map) : 0;
    if (count < 1) throw CodecError("no palette was found");
    Palette palette;
    for (int i = 0; i < paletteSize; ++i) {
        l_int32 red = 0;
        l_int32 green = 0;
        l_int32 blue = 0;
        pixcmapGetColor(map, std::min(i, count - 1), &red, &green, &blue);
        palette.at(static_cast<std::size_t>(i)) = {static_cast<std::uint8_t>(red),
                                                   static_cast<std::uint8_t>(green),
                                                   static_cast<std::uint8_t>(blue)};
    }
    return palette;
}

struct Sum {
    std::int64_t red = 0;
    std::int64_t green = 0;
    std::int64_t blue = 0;
    std::int64_t count = 0;
};

/// Each colour moved to the mean of the samples that are nearest to it.
Palette moved(const Palette& palette, PIX* samples) {
    std::array<Sum, paletteSize> sums{};
    NearestColor nearest(palette);
    const auto wordsPerLine = static_cast<std::ptrdiff_t>(pixGetWpl(samples));
    for (int y = 0; y < pixGetHeight(samples); ++y) {
        const l_uint32* line = pixGetData(samples) + y * wordsPerLine;
        for (int x = 0; x < pixGetWidth(samples); ++x) {
            const int red = static_cast<int>(line[x] >> 24U);
            const int green = static_cast<int>(line[x] >> 16U & 0xffU);
            const int blue = static_cast<int>(line[x] >> 8U & 0xffU);
            Sum& sum = sums[nearest.of(red, green, blue)];
            sum.red += red;
            sum.green += green;
            sum.blue += blue;
            ++sum.count;
        }
    }
    Palette result = palette;
    for (std::size_t i = 0; i < sums.size(); ++i) {
        const Sum& sum = sums.at(i);
        if (sum.count == 0) continue;
        const auto mean = [&](std::int64_t total) {
            return static_cast<std::uint8_t>((total + sum.count / 2) / sum.count);
        };
        result.at(i) = {mean(sum.red), mean(sum.green), mean(sum.blue)};
    }
    return result;
}

Palette paletteFor(const OpaquePicture& picture) {
    constexpr int moves = 5;
    const Pix samples = samplesOf(picture, sampleStep(picture));
    Palette palette = medianCut(samples.get());
    for (int i = 0; i < moves; ++i) palette = moved(palette, samples.get());
    return palette;
}

/// Errors handed on to the pixels of one row, each component in sixteenths of a level; one pixel
/// more at either end.
using RowErrors = std::vector<std::array<int, 3>>;

class Ditherer {
public:
    explicit Ditherer(const OpaquePicture& picture)
        : m_picture(picture),
          m_here(static_cast<std::size_t>(picture.width) + 2),
          m_below(m_here.size()) {
        m_indexed.width = picture.width;
        m_indexed.palette = paletteFor(picture);
        m_indexed.pixels.resize(picture.pixels.size() / 4);
    }

    IndexedPicture run(const Progress& progress) {
        NearestColor nearest(m_indexed.palette);
        for (int y = 0; y < m_picture.height; ++y) {
            const int step = y % 2 == 0 ? 1 : -1;
            for (int i = 0; i < m_picture.width; ++i)
                placePixel(nearest, step > 0 ? i : m_picture.width - 1 - i, y, step);
            m_here.swap(m_below);
            std::ranges::fill(m_below, std::array<int, 3>{});
            progress((y + 1.0) / m_picture.height);
        }
        return std::move(m_indexed);
    }

private:
    void placePixel(NearestColor& nearest, int x, int y, int step) {
        // Handing on less than the whole error keeps single pixels closer to what they were.
        constexpr int handedOn = 12;
        constexpr int whole = 16;
        const std::uint8_t* pixel = m_picture.row(y) + std::ptrdiff_t{4} * x;
        const auto at = static_cast<std::ptrdiff_t>(x) + 1;
        std::array<int, 3> wanted{};
        for (std::size_t i = 0; i < wanted.size(); ++i)
            wanted[i] = std::clamp(
                pixel[i] + (m_here[static_cast<std::size_t>(at)][i] + whole / 2) / whole, 0, 255);
        const std::uint8_t number = nearest.of(wanted[0], wanted[1], wanted[2]);
        const PaletteColor color = m_indexed.palette[number];
        m_indexed.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_picture.width) +
                         static_cast<std::size_t>(x)] = number;
        const std::array<int, 3> got{color.red, color.green, color.blue};
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const int error = (wanted[i] - got[i]) * handedOn / whole;
            m_here[static_cast<std::size_t>(at + step)][i] += 7 * error;
            m_below[static_cast<std::size_t>(at - step)][i] += 3 * error;
            m_below[static_cast<std::size_t>(at)][i] += 5 * error;
            m_below[static_cast<std::size_t>(at + step)][i] += error;
        }
    }

    const OpaquePicture& m_picture;
    RowErrors m_here;
    RowErrors m_below;
    IndexedPicture m_indexed;
};

} // namespace

IndexedPicture indexedPicture(const OpaquePicture& picture, const Progress& progress) {
    std::optional<IndexedPicture> exact = withItsOwnColors(picture);
    return exact ? *std::move(exact) : Ditherer(picture).run(progress);
}

} // namespace quillabrae::codecs
