// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/OutlinedStyle.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"

#include <QApplication>

namespace quillabrae::bench {

/// Windows look as those of the program do on a light desktop.
inline void useUsualLook() {
    QApplication::setStyle(new shell::OutlinedStyle);
    shell::Symbols::useScheme(shell::ColorScheme::light);
    shell::Style::apply(shell::ColorScheme::light);
}

} // namespace quillabrae::bench
