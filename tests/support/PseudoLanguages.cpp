// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PseudoLanguages.h"

namespace quillabrae {

QString longLanguage() {
    return QStringLiteral("en_XA");
}

QString rightToLeftLanguage() {
    return QStringLiteral("ar_XB");
}

} // namespace quillabrae
