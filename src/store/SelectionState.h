// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <QRectF>

#include <optional>

/// A project's selection is a plain one, which marks a region of the selected layer, or a floating
/// one, which holds pixels that are in no layer until they are put down.
namespace quillabrae::store {

/// What commands work on: the outline, else the floating pixels' own rectangle, else the whole
/// canvas where it is selected.
std::optional<model::PixelSelection> activeSelection(const model::PaintProject& project);

/// The rectangle of a selection as it stands, whatever the canvas.
QRectF rectOf(const model::PixelSelection& selection);

/// The part of the canvas that floating pixels really cover; nothing where they cover none.
std::optional<QRectF> floatingSelectionBounds(const model::PaintProject& project);

/// Draws the floating pixels into their layer, locked or not, and ends the selection. The place
/// truncates to whole pixels, at least 1 by 1. False, with nothing changed, when nothing floats,
/// its layer is gone or its bytes do not decode. Neither stamps nor records.
bool putDownFloatingSelection(model::PaintProject& project);

/// Selects nothing; floating pixels are gone.
void clearSelection(model::PaintProject& project);

} // namespace quillabrae::store
