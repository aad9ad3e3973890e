// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/Style.h"

#include <QIcon>
#include <QString>
#include <QStringList>

/// Symbols by name, as tools, commands and history entries carry them. All are drawn in the
/// program's own resources, on a square of 22 or 16 points with lines of about 1.4 of them, so that
/// they look like one hand's.
namespace quillabrae::shell::Symbols {

/// Makes later icons those for a light or a dark background.
void useScheme(ColorScheme scheme);

/// The symbol's icon, turned where it points back or on and the program's language runs from right
/// to left; a null icon for an unknown symbol. Looked up on call, so best asked for when
/// it is first painted.
QIcon icon(const QString& symbolName);

/// Whether the table knows the symbol.
bool isKnown(const QString& symbolName);

/// All that the table knows.
QStringList names();

} // namespace quillabrae::shell::Symbols
