// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginEffectService.h"

#include "effects/Bloom.h"
#include "effects/Comic.h"
#include "effects/Noir.h"
#include "effects/Posterize.h"
#include "effects/SharpenLuminance.h"
#include "effects/Vibrance.h"
#include "model/Vocabulary.h"
#include "raster/LayerRewrite.h"

#include <array>

namespace quillabrae::effects::PluginEffectService {
namespace {

using raster::RasterImage;

template <typename Effect>
RasterImage run(const RasterImage& image) {
    return applied(Effect{}, image);
}

struct Row {
    QuillabraePluginEffect value;
    RasterImage (*run)(const RasterImage& image);
};

constexpr std::array rows{
    Row{QuillabraePluginEffect::bloom, run<Bloom>},
    Row{QuillabraePluginEffect::colorLift, run<Vibrance>},
    Row{QuillabraePluginEffect::comicInk, run<Comic>},
    Row{QuillabraePluginEffect::monochrome, run<Noir>},
    Row{QuillabraePluginEffect::posterize, run<Posterize>},
    Row{QuillabraePluginEffect::sharpen, run<SharpenLuminance>},
};

} // namespace

RasterImage apply(QuillabraePluginEffect effect, const RasterImage& image) {
    return model::vocabularyRow(std::span<const Row>(rows), effect).run(image);
}

bool apply(QuillabraePluginEffect effect, model::PaintLayer& layer, double canvasWidth,
           double canvasHeight) {
    const raster::LayerRewrite rewrite(layer, canvasWidth, canvasHeight);
    const RasterImage result = apply(effect, rewrite.image());
    if (result.isNull()) return false;
    rewrite.store(result, QRect(0, 0, result.width(), result.height()));
    return true;
}

} // namespace quillabrae::effects::PluginEffectService
