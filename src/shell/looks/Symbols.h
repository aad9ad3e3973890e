// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/Style.h"

#include <QIcon>
#include <QString>

/// Symbols by name, as tools, commands and history entries carry them. One icon set draws them all,
/// so that they look like one hand's; what the set lacks is drawn in the program's own resources.
namespace quillabrae::shell::Symbols {

/// Makes later icons those for a light or a dark background.
void useScheme(ColorScheme scheme);

/// The symbol's icon; a null icon for an unknown symbol. Looked up on call, so best asked for when
/// it is first painted.
QIcon icon(const QString& symbolName);

/// Whether the table knows the symbol.
bool isKnown(const QString& symbolName);

} // namespace quillabrae::shell::Symbols
