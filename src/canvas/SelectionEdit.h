// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PixelSelection.h"

#include <QString>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;

/// The selection in force on the active project, none without a project.
std::optional<model::PixelSelection> selectionInForce(const CanvasContext& context);

/// Gives the active project that selection, or none. The canvas's pixels stay as they are.
void select(CanvasContext& context, const std::optional<model::PixelSelection>& selection);

/// Stamps the active project and adds an entry to its history.
void recordEdit(CanvasContext& context, const QString& title, const QString& symbolName);

} // namespace quillabrae::canvas
