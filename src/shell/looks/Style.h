// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>

class QPushButton;
class QWidget;

namespace quillabrae::shell {

enum class ColorScheme { light, dark };

/// How far texts and edges stand out from their ground: at least 4.5 and 3 to 1, or 7 to 1.
enum class Contrast { normal, high };

/// How the program looks: one palette for each scheme and contrast, one accent, one grid.
/// Everything that is painted takes its colours from a widget's palette or from here.
namespace Style {

/// The step of the layout grid, in points; half of it separates what belongs together.
constexpr int grid = 8;
constexpr int cornerRadius = 6;
constexpr int smallIcon = 16;
constexpr int mediumIcon = 22;
/// The opacity of the icons of what is disabled.
constexpr double disabledStrength = 0.35;

QPalette palette(ColorScheme scheme, Contrast contrast = Contrast::normal);
ColorScheme schemeOf(const QPalette& palette);
Contrast contrastOf(const QPalette& palette);

/// Gives the whole program the palette of a scheme.
void apply(ColorScheme scheme, Contrast contrast = Contrast::normal);

/// Makes the button of the likeliest choice stand out.
void markPrimary(QPushButton& button);
bool isPrimary(const QWidget* widget);

/// Hairlines between and around surfaces.
QColor line(const QPalette& palette);
/// The edge of fields and boxes that something is entered in.
QColor outline(const QPalette& palette);
/// Text that stands back: captions, paths, disabled titles.
QColor mutedText(const QPalette& palette);
/// The face of a control under the pointer.
QColor hover(const QPalette& palette);
/// The face of a control that is held down or switched on.
QColor pressed(const QPalette& palette);
/// Text that tells what went wrong.
QColor failure(const QPalette& palette);
QColor accent(const QPalette& palette);
/// A faint wash of the accent: what is chosen.
QColor accentWash(const QPalette& palette);
/// A surface that floats over the canvas.
QColor raised(const QPalette& palette);
/// What small pictures with holes lie on: neither black nor white strokes are lost on it.
QColor paper(const QPalette& palette);

} // namespace Style
} // namespace quillabrae::shell
