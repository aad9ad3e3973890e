// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/TextStyle.h"

#include <QFont>

namespace quillabrae::raster {

/// The font of a style at `pixelSize`: of the family of that name; where there is none, of the
/// single face whose full name it is ("DejaVu Sans Bold", "DejaVuSans-Bold"); else the system's
/// font. Bold and italic come from the family where it has them and are made up where it has not.
/// Outlines are neither hinted nor drawn for a kind of screen: the pixels are the picture's own.
/// Needs a QGuiApplication.
QFont textFont(const TextStyle& style, int pixelSize);

} // namespace quillabrae::raster
