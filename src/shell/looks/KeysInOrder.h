// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::shell {

/// A text that ends with keys, for a language from right to left: keys are in one order in every
/// language, also those that end with a sign, such as a comma, which belongs to no sentence.
inline QString keysInOrder(const QString& text) {
    constexpr QChar leftToRightMark(0x200e);
    return text + leftToRightMark;
}

} // namespace quillabrae::shell
