// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/Comic.h"
#include "effects/EffectTest.h"

#include <algorithm>
#include <functional>
#include <numbers>
#include <vector>

namespace quillabrae::effects {
namespace {

/// Reals on a grid, continued beyond its edges by what is at them.
struct Grid {
    int width = 0;
    int height = 0;
    std::vector<double> values{};

    Grid(int columns, int rows, const std::function<double(int x, int y)>& value)
        : width(columns), height(rows) {
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < columns; ++x) values.push_back(value(x, y));
    }
    double at(int x, int y) const {
        const int column = std::clamp(x, 0, width - 1);
        const int row = std::clamp(y, 0, height - 1);
        return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(column)];
    }
    /// Linearly between the places of cells of four pixels.
    double between(double x, double y) const {
        const int column = static_cast<int>(std::floor(x));
        const int row = static_cast<int>(std::floor(y));
        const double right = x - column;
        const double below = y - row;
        return (1 - below) * ((1 - right) * at(column, row) + right * at(column + 1, row)) +
               below * ((1 - right) * at(column, row + 1) + right * at(column + 1, row + 1));
    }
};

double lumaOf(Components color) {
    return 0.299 * color[0] + 0.587 * color[1] + 0.114 * color[2];
}

/// The sum of something over the 3 by 3 cells around one.
double around(int x, int y, const std::function<double(int x, int y)>& value) {
    double sum = 0.0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) sum += value(x + dx, y + dy);
    return sum;
}

/// Gain and offset of one channel's guided filter at each cell.
struct Guided {
    Grid gain;
    Grid offset;

    double at(int x, int y, double value) const {
        const double column = (x - 1.5) / 4.0;
        const double row = (y - 1.5) / 4.0;
        return std::clamp(gain.between(column, row) * value + offset.between(column, row), 0.0,
                          1.0);
    }
};

/// The sums of the cells' pixels: of the alphas, and of the premultiplied channels.
class Cells {
public:
    explicit Cells(const RasterImage& image)
        : m_columns((image.width() + 3) / 4), m_rows((image.height() + 3) / 4) {
        for (std::size_t c = 0; c < 4; ++c) m_sums.push_back(sumsOf(image, c));
    }

    Guided guided(std::size_t c, double epsilon) const {
        const auto weight = [&](int x, int y) { return m_sums[3].at(x, y); };
        const auto channel = [&](int x, int y) {
            return weight(x, y) == 0.0 ? 0.0 : m_sums[c].at(x, y) / weight(x, y);
        };
        const auto mean = [&](int x, int y, const auto& value) {
            const double weights = around(x, y, weight);
            if (weights == 0.0) return 0.0;
            return around(x, y, [&](int u, int v) { return weight(u, v) * value(u, v); }) / weights;
        };
        const Grid gains(m_columns, m_rows, [&](int x, int y) {
            const double middle = mean(x, y, channel);
            const double variance =
                mean(x, y, [&](int u, int v) { return channel(u, v) * channel(u, v); }) -
                middle * middle;
            return variance / (variance + epsilon);
        });
        const Grid offsets(m_columns, m_rows, [&](int x, int y) {
            return (1.0 - gains.at(x, y)) * mean(x, y, channel);
        });
        const Grid weights(m_columns, m_rows, [&](int x, int y) { return around(x, y, weight); });
        const auto averaged = [&](const Grid& grid) {
            return Grid(m_columns, m_rows, [&](int x, int y) {
                const double all = around(x, y, [&](int u, int v) { return weights.at(u, v); });
                if (all == 0.0) return 0.0;
                return around(x, y,
                              [&](int u, int v) { return weights.at(u, v) * grid.at(u, v); }) /
                       all;
            });
        };
        return {averaged(gains), averaged(offsets)};
    }

private:
    Grid sumsOf(const RasterImage& image, std::size_t c) const {
        return {m_columns, m_rows, [&](int x, int y) {
                    double sum = 0.0;
                    for (int v = 4 * y; v < std::min(4 * y + 4, image.height()); ++v)
                        for (int u = 4 * x; u < std::min(4 * x + 4, image.width()); ++u)
                            sum += image.row(v)[4 * static_cast<std::size_t>(u) + c];
                    return sum / (16.0 * 255.0);
                }};
    }

    int m_columns;
    int m_rows;
    std::vector<Grid> m_sums;
};

/// A Gaussian of one grid by the weights of another.
double smoothed(const Grid& values, const Grid& weights, int x, int y, double deviation) {
    const int reach = static_cast<int>(std::ceil(6 * deviation));
    double sum = 0.0;
    double all = 0.0;
    for (int dy = -reach; dy <= reach; ++dy) {
        for (int dx = -reach; dx <= reach; ++dx) {
            const double weight = std::exp(-0.5 * (dx * dx + dy * dy) / (deviation * deviation)) *
                                  weights.at(x + dx, y + dy);
            sum += weight * values.at(x + dx, y + dy);
            all += weight;
        }
    }
    return all > 0.0 ? sum / all : 0.0;
}

double unit(double value) {
    return std::clamp(value, 0.0, 1.0);
}

double toneOf(const Comic& comic, double luma) {
    const double steps = double(comic.tones) - 1.0;
    const double nearestStep = std::floor(steps * luma + 0.5);
    return (nearestStep + std::clamp(4.0 * (steps * luma - nearestStep), -0.5, 0.5)) / steps;
}

double inkOf(const Comic& comic, const Grid& luma, const Grid& alpha, int x, int y) {
    const double coarse = smoothed(luma, alpha, x, y, double(comic.coarseDeviation));
    const double fine = smoothed(luma, alpha, x, y, double(comic.fineDeviation));
    const double edge = (coarse - fine) / (coarse + 0.1);
    const double line = unit((edge - double(comic.lineBegins)) /
                             (double(comic.lineIsFull) - double(comic.lineBegins)));
    const double dot =
        0.5 - 0.5 * std::cos(std::numbers::pi * x / 4.0) * std::cos(std::numbers::pi * y / 4.0);
    const double shade = double(comic.coverage) * (1.0 - luma.at(x, y) / double(comic.shadow));
    const double dots = unit(4.0 * (shade - dot) + 0.5);
    return 1.0 - (1.0 - line) * (1.0 - dots);
}

RasterImage drawnSlowly(const Comic& comic, const RasterImage& image) {
    const Cells cells(image);
    const double epsilon = double(comic.flatness);
    const std::array<Guided, 3> guided{cells.guided(0, epsilon), cells.guided(1, epsilon),
                                       cells.guided(2, epsilon)};
    const auto flatAt = [&](int x, int y) {
        const Pixel pixel = pixelAt(image, x, y);
        Components flat = componentsOf(pixel);
        for (std::size_t c = 0; c < 3; ++c)
            flat[c] = guided[c].at(x, y, pixel.alpha == 0 ? 0.0 : flat[c] / pixel.alpha);
        return flat;
    };
    const Grid luma(image.width(), image.height(),
                    [&](int x, int y) { return lumaOf(flatAt(x, y)); });
    const Grid alpha(image.width(), image.height(),
                     [&](int x, int y) { return double(pixelAt(image, x, y).alpha); });
    RasterImage result(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const Pixel pixel = pixelAt(image, x, y);
            const double paper = pixel.alpha * (1.0 - 0.92 * inkOf(comic, luma, alpha, x, y));
            Components color = flatAt(x, y);
            for (double& c : color)
                c = paper *
                    unit(toneOf(comic, luma.at(x, y)) + double(comic.chroma) * (c - luma.at(x, y)));
            raster::setPixel(result, x, y, pixelOf(color, pixel.alpha));
        }
    }
    return result;
}

void expectAgreement(const RasterImage& image) {
    EXPECT_LE(raster::greatestDifference(applied(Comic{}, image), drawnSlowly(Comic{}, image)), 1)
        << image.width() << " by " << image.height();
}

RasterImage opaque(RasterImage image) {
    for (std::size_t i = 3; i < image.byteCount(); i += 4) image.mutableBytes()[i] = 255;
    return image;
}

TEST(Comic, AgreesWithTheDefinitionOnRandomPixels) {
    std::mt19937 random(71);
    for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(30, 5), QSize(7, 21), QSize(33, 34)}) {
        const RasterImage image = raster::randomImage(size.width(), size.height(), random);
        expectAgreement(image);
        expectAgreement(opaque(image));
    }
}

TEST(Comic, AgreesWithTheDefinitionOnShadesAndEdges) {
    RasterImage image(48, 40);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 48; ++x) {
            const int shade = std::min(5 * x + (y > 20 ? 40 : 0), 255);
            raster::setPixel(image, x, y, {shade, shade * 3 / 4, 255 - shade, 255});
        }
    }
    expectAgreement(image);
}

TEST(Comic, DrawsALineAlongAnEdge) {
    RasterImage image = raster::filledImage(64, 16, {230, 230, 230, 255});
    for (int y = 0; y < 16; ++y)
        for (int x = 32; x < 64; ++x) raster::setPixel(image, x, y, {110, 110, 110, 255});
    const RasterImage result = applied(Comic{}, image);
    EXPECT_LT(pixelAt(result, 32, 8).red, 60);
    EXPECT_GT(pixelAt(result, 16, 8).red, 200);
    EXPECT_GT(pixelAt(result, 52, 8).red, 90);
}

TEST(Comic, DrawsNoLineAlongTheEdgeOfAShape) {
    RasterImage image(40, 40);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 20; ++x) raster::setPixel(image, x, y, {200, 200, 200, 255});
    const RasterImage result = applied(Comic{}, image);
    EXPECT_EQ(pixelAt(result, 19, 20), pixelAt(result, 5, 20));
    EXPECT_EQ(pixelAt(result, 20, 20), Pixel{});
}

TEST(Comic, PrintsShadowsInDotsAndLeavesLightsClean) {
    const RasterImage shadow = applied(Comic{}, raster::filledImage(16, 16, {60, 60, 60, 255}));
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            darkest = std::min(darkest, pixelAt(shadow, x, y).red);
            lightest = std::max(lightest, pixelAt(shadow, x, y).red);
            EXPECT_EQ(pixelAt(shadow, x, y), pixelAt(shadow, x + 8, y + 8));
        }
    }
    EXPECT_LT(darkest, 10);
    EXPECT_GT(lightest, 30);
    const RasterImage light = applied(Comic{}, raster::filledImage(16, 16, {210, 210, 210, 255}));
    EXPECT_TRUE(light == raster::filledImage(16, 16, pixelAt(light, 0, 0)));
}

TEST(Comic, KeepsAlpha) {
    expectAlphaKept(Comic{});
}

TEST(Comic, IsTheSameOnOneThread) {
    expectSameOnOneThread(Comic{});
}

} // namespace
} // namespace quillabrae::effects
