// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/PictureCheck.h"

#include "raster/PngChunks.h"

#include <QSet>

#include <algorithm>

namespace quillabrae::persistence {
namespace {

class PictureCheck {
public:
    bool holdsIn(const model::PaintProject& project) {
        const auto isWholeLayer = [this](const model::PaintLayer& layer) {
            return !layer.bitmapPNGData || isWhole(*layer.bitmapPNGData);
        };
        const auto& selection = project.pixelSelection;
        const auto& floating = project.floatingSelection;
        return std::ranges::all_of(project.layers, isWholeLayer) &&
               (!selection || !selection->maskPNGData || isWhole(*selection->maskPNGData)) &&
               (!floating || isWhole(floating->pngData));
    }

private:
    bool isWhole(const model::PngBytes& png) {
        if (m_known.contains(png.buffer().get())) return true;
        m_known.insert(png.buffer().get());
        const auto layout = raster::readPngLayout(png.bytes());
        return layout && std::ranges::all_of(layout->imageData, &raster::PngChunk::hasValidCrc);
    }

    QSet<const QByteArray*> m_known;
};

} // namespace

bool hasWholePictures(const PaintAutosaveSession& session) {
    PictureCheck check;
    const auto holds = [&check](const model::PaintProject& project) {
        return check.holdsIn(project);
    };
    if (!std::ranges::all_of(session.projects, holds)) return false;
    return std::all_of(session.histories.cbegin(), session.histories.cend(),
                       [&](const model::PaintHistoryState& history) {
                           return std::ranges::all_of(history.entries, holds,
                                                      &model::PaintHistoryEntry::project);
                       });
}

} // namespace quillabrae::persistence
