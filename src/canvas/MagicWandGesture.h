// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/PixelSelection.h"

#include <QUuid>

#include <optional>

namespace quillabrae::model {
struct PaintLayer;
}

namespace quillabrae::canvas {

class CanvasContext;

/// Selecting a region of similar colour, on the press and with every sample of the drag. The latest
/// click stays adjustable by the match percentage.
class MagicWandGesture {
public:
    explicit MagicWandGesture(CanvasContext& context) : m_context(context) {}

    void selectMagicWandArea(model::CanvasPoint point);
    /// Selects again from the latest click, with the present percentage, without an entry in the
    /// history. Leaves the selection alone when nothing matches.
    void refreshMagicWandSelectionForMatchChange();
    /// Records the selection; false when the gesture made none.
    bool finish();
    void forgetSeed() { m_magicWandSeed.reset(); }

private:
    struct MagicWandSeed {
        QUuid layerID;
        model::CanvasPoint point;
    };

    std::optional<model::PixelSelection> selectionOf(const model::PaintLayer& layer,
                                                     model::CanvasPoint point) const;

    CanvasContext& m_context;
    std::optional<MagicWandSeed> m_magicWandSeed;
    bool m_didCreateSelection = false;
};

} // namespace quillabrae::canvas
