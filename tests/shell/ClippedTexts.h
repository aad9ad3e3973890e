// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

class QWidget;

namespace quillabrae::shell {

/// The texts of a shown window that have less room than they need, each with the kind of widget it
/// is in and by how much. What is elided on purpose, with the whole text elsewhere, counts as
/// whole.
QStringList clippedTexts(const QWidget& window);

} // namespace quillabrae::shell
