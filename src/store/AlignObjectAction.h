// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/LayerRasterServiceLayers.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::store {

/// Where an object goes within its bounds: nine places, and six edges and middles that leave the
/// other axis as it is.
enum class AlignObjectAction {
    topLeft,
    topCenter,
    topRight,
    middleLeft,
    center,
    middleRight,
    bottomLeft,
    bottomCenter,
    bottomRight,
    horizontalLeft,
    horizontalCenter,
    horizontalRight,
    verticalTop,
    verticalMiddle,
    verticalBottom,
};

using AlignHorizontalTarget = raster::LayerRasterService::AlignHorizontalTarget;
using AlignVerticalTarget = raster::LayerRasterService::AlignVerticalTarget;

std::array<AlignObjectAction, 15> allAlignObjectActions();

QString rawText(AlignObjectAction action);
std::optional<AlignObjectAction> alignObjectActionFromRawText(QStringView rawText);
QString title(AlignObjectAction action);
QString symbolName(AlignObjectAction action);
AlignHorizontalTarget horizontalTarget(AlignObjectAction action);
AlignVerticalTarget verticalTarget(AlignObjectAction action);

} // namespace quillabrae::store
