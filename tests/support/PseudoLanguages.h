// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae {

// Languages that tools/translations.py makes of the source, and that only tests have.

/// Accented and longer than English, in brackets.
QString longLanguage();
/// The same from right to left, between two Hebrew letters.
QString rightToLeftLanguage();

} // namespace quillabrae
