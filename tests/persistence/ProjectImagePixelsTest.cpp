// SPDX-License-Identifier: GPL-3.0-or-later
// The flat picture against its slow twin: layers of any size, and large ones that are mostly
// transparent, which are drawn without their margins.
#include "persistence/ProjectImageExportService.h"
#include "persistence/SampleProjects.h"
#include "raster/DecodeCache.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

namespace quillabrae::persistence {
namespace {

using ProjectImageExportService::Background;
using ProjectImageExportService::render;
using raster::Pixel;
using raster::RasterImage;

/// Just large enough to be read without margins, and low: the twin takes its time for every row.
constexpr QSize wideSize(32'768, 128);

/// floor((place + 0.5) * sources / places)
int sourceAt(std::int64_t place, std::int64_t sources, std::int64_t places) {
    return static_cast<int>((2 * place + 1) * sources / (2 * places));
}

/// Every pixel on its own: what its centre shows of each layer, one over the other.
RasterImage bookRendered(const model::PaintProject& project, Background background) {
    const bool isWhite = background == Background::white;
    RasterImage picture = raster::filledImage(static_cast<int>(std::round(project.canvasWidth)),
                                              static_cast<int>(std::round(project.canvasHeight)),
                                              isWhite ? Pixel{255, 255, 255, 255} : Pixel{});
    for (const model::PaintLayer& layer : project.layers) {
        const RasterImage pixels = raster::decodePng(*layer.bitmapPNGData);
        const int fraction = static_cast<int>(std::round(layer.opacity * 255));
        for (int y = 0; y < picture.height(); ++y) {
            const int row = sourceAt(y, pixels.height(), picture.height());
            for (int x = 0; x < picture.width(); ++x) {
                const int column = sourceAt(x, pixels.width(), picture.width());
                const Pixel source = raster::pixelAt(pixels, column, row);
                // Most of a wide picture: over what is there it changes nothing.
                if (source == Pixel{}) continue;
                raster::setPixel(
                    picture, x, y,
                    raster::bookSourceOver(raster::pixelAt(picture, x, y), source, fraction));
            }
        }
    }
    return picture;
}

class FlatPicture : public testing::Test {
protected:
    FlatPicture() { raster::clearDecodeCache(); }
    ~FlatPicture() override { raster::clearDecodeCache(); }

    /// Noise in those rectangles and nothing else: little enough to be read without its margins.
    model::PaintLayer sparseLayer(const std::vector<QRect>& drawn, double opacity = 1.0) {
        RasterImage image(wideSize.width(), wideSize.height());
        for (const QRect& rect : drawn) {
            const RasterImage noise = raster::randomImage(rect.width(), rect.height(), m_random);
            for (int y = 0; y < rect.height(); ++y)
                std::memcpy(image.mutableRow(rect.top() + y) + 4 * std::ptrdiff_t{rect.left()},
                            noise.row(y), noise.stride());
        }
        model::PaintLayer layer = raster::layerOf(image, opacity);
        raster::clearDecodeCache();
        EXPECT_FALSE(raster::decodedCrop(*layer.bitmapPNGData).isWhole());
        return layer;
    }
    model::PaintLayer noiseLayer(QSize size, double opacity = 1.0) {
        return raster::layerOf(raster::randomImage(size.width(), size.height(), m_random), opacity);
    }

    static void expectByTheBook(QSizeF canvas, std::vector<model::PaintLayer> layers) {
        model::PaintProject project = samples::project(canvas.toSize(), std::move(layers));
        project.canvasWidth = canvas.width();
        project.canvasHeight = canvas.height();
        for (const Background background : {Background::transparent, Background::white})
            EXPECT_TRUE(render(project, background) == bookRendered(project, background))
                << canvas.width() << ' ' << (background == Background::white ? "white" : "clear");
    }

    std::mt19937 m_random{81};
};

TEST_F(FlatPicture, OfLayersWithWideMarginsIsThatOfWholeOnes) {
    expectByTheBook(wideSize,
                    {sparseLayer({{0, 0, 300, 40}, {9000, 30, 700, 60}}),
                     sparseLayer({{wideSize.width() - 500, wideSize.height() - 50, 500, 50}}, 0.4),
                     sparseLayer({{9300, 0, 200, wideSize.height()}}, 0.7),
                     sparseLayer({{0, wideSize.height() - 1, 1, 1}}), sparseLayer({})});
}

TEST_F(FlatPicture, StretchesLayersWithWideMarginsAsWholeOnes) {
    const std::vector<model::PaintLayer> layers{
        sparseLayer({{0, 0, 300, 40}, {9000, 30, 700, 60}}),
        sparseLayer({{wideSize.width() - 500, wideSize.height() - 50, 500, 50}}, 0.4),
        sparseLayer({{0, 90, 9000, 30}}), sparseLayer({{20'000, 60, 1, 1}})};
    for (const QSizeF canvas : {QSizeF(997, 31), QSizeF(32'000, 5), QSizeF(613, 400)})
        expectByTheBook(canvas, layers);
}

TEST_F(FlatPicture, StretchesLayersOfAnySizeOverTheCanvas) {
    const std::vector<model::PaintLayer> layers{noiseLayer({211, 67}), noiseLayer({40, 90}, 0.8),
                                                noiseLayer({500, 31}, 0.3), noiseLayer({1, 1}, 0.1),
                                                noiseLayer({213, 1}, 0.5)};
    for (const QSizeF canvas : {QSizeF(211, 67), QSizeF(210.6, 66.5), QSizeF(1, 300)})
        expectByTheBook(canvas, layers);
}

} // namespace
} // namespace quillabrae::persistence
