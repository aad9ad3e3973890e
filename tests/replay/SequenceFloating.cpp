// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SequenceFloating.h"

#include "raster/DecodeCache.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace quillabrae::replay {
namespace {

using model::PaintHistoryState;
using model::PaintLayer;
using model::PaintProject;

/// Lines after which floating pixels may be gone without having been put down.
bool mayLoseFloating(const Step& step) {
    return step.isAboutTabs() ||
           step.isOneOf({"store.cutSelectedCanvasPixels", "store.undo", "store.redo",
                         "store.resizeActiveImage", "store.resizeActiveCanvas",
                         "store.repeatLastAction", "paste", "drop",
                         "store.cancelAlignObjectPreview", "store.cancelColorRemovalPreview",
                         "store.commitAlignObjectPreview", "store.commitColorRemovalPreview",
                         "store.previewAlignObject", "store.previewColorRemoval"});
}

/// Lines that put floating pixels down and change the layer besides, all in one entry.
bool putsDownAndGoesOn(const Step& step) {
    // What is being drawn outlives undo and redo, which can bring floating pixels back under it.
    return step.mayClickByKey() ||
           step.isOneOf({"canvas.release", "store.flattenLayerDown", "store.invertActiveImage",
                         "store.trimTransparentWhitespace"});
}

/// The definition of putting down, pixel by pixel: nearest neighbour, source over.
QImage putDown(const PaintProject& project) {
    const auto& floating = *project.floatingSelection;
    const PaintLayer& layer = *layerOf(project, floating.layerID);
    const auto premultiplied = QImage::Format_ARGB32_Premultiplied;
    const QSize size(static_cast<int>(project.canvasWidth), static_cast<int>(project.canvasHeight));
    QImage under(size, premultiplied);
    under.fill(Qt::transparent);
    if (layer.bitmapPNGData)
        under =
            raster::decodedImage(*layer.bitmapPNGData).toQImage().convertToFormat(premultiplied);
    const QImage pixels =
        raster::decodedImage(floating.pngData).toQImage().convertToFormat(premultiplied);
    const model::PixelSelection& place = *project.pixelSelection;
    const int width = std::max(static_cast<int>(place.width), 1);
    const int height = std::max(static_cast<int>(place.height), 1);
    const auto over = [](int top, int bottom, int alpha) {
        return top + static_cast<int>(std::lround(bottom * (255 - alpha) / 255.0));
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const QPoint at(static_cast<int>(place.x) + x, static_cast<int>(place.y) + y);
            if (!under.rect().contains(at)) continue;
            const auto source = [](int index, int from, int to) {
                return static_cast<int>((index + 0.5) * from / to);
            };
            const QRgb top =
                pixels.pixel(source(x, pixels.width(), width), source(y, pixels.height(), height));
            const QRgb bottom = under.pixel(at);
            const int alpha = qAlpha(top);
            under.setPixel(at, qRgba(over(qRed(top), qRed(bottom), alpha),
                                     over(qGreen(top), qGreen(bottom), alpha),
                                     over(qBlue(top), qBlue(bottom), alpha),
                                     over(alpha, qAlpha(bottom), alpha)));
        }
    }
    return under;
}

/// Within one level, premultiplied.
bool looksLike(const PaintLayer& layer, const QImage& expected) {
    if (!layer.bitmapPNGData) return false;
    const QImage found =
        raster::decodedImage(*layer.bitmapPNGData).toQImage().convertToFormat(expected.format());
    if (found.size() != expected.size()) return false;
    for (int y = 0; y < found.height(); ++y) {
        const uchar* a = found.constScanLine(y);
        const uchar* b = expected.constScanLine(y);
        for (int i = 0; i < found.width() * 4; ++i) {
            if (std::abs(a[i] - b[i]) > 1) return false;
        }
    }
    return true;
}

/// A project as it was before a step, at each entry that the step recorded, and after it.
std::vector<const PaintProject*> courseOf(const Step& step, const PaintProject& then,
                                          const PaintProject& now) {
    std::vector<const PaintProject*> course{&then};
    const PaintHistoryState known = step.before.histories.value(then.id);
    const auto history = step.after.histories.constFind(then.id);
    if (history != step.after.histories.cend()) {
        for (const model::PaintHistoryEntry& entry : history->entries) {
            if (!isIn(known, entry)) course.push_back(&entry.project);
        }
    }
    course.push_back(&now);
    return course;
}

/// Whether, somewhere on its course, nothing else happened to a project than that its floating
/// pixels came down on their layer.
bool cameDown(const std::vector<const PaintProject*>& course) {
    for (std::size_t i = 0; i + 1 < course.size(); ++i) {
        const PaintProject& from = *course[i];
        const PaintProject& to = *course[i + 1];
        if (!isCommittable(from) || to.floatingSelection) continue;
        const PaintLayer* layer = layerOf(to, from.floatingSelection->layerID);
        return layer != nullptr && looksLike(*layer, putDown(from));
    }
    return false;
}

} // namespace

void floatingPixelsStayOrComeDown(const Step& step, QStringList& broken) {
    if (mayLoseFloating(step)) return;
    for (const PaintProject& then : step.before.projects) {
        if (!then.floatingSelection) continue;
        const PaintProject* now = step.after.project(then.id);
        if (now == nullptr) {
            broken << QStringLiteral("floating: the project is gone");
            continue;
        }
        if (now->floatingSelection == then.floatingSelection) continue;
        const bool isDiscarded =
            step.verb() == QLatin1StringView("store.dropSelection") && !isCommittable(then);
        if (isDiscarded || putsDownAndGoesOn(step)) continue;
        if (!cameDown(courseOf(step, then, *now)))
            broken << QStringLiteral("floating: pixels are neither floating nor on their layer");
    }
}

} // namespace quillabrae::replay
