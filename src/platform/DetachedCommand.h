// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace quillabrae::platform {

/// Starts another program and forgets it: no output, no waiting, no error. Nothing happens when
/// `program` is not in the search path.
void startDetached(const QString& program, const QStringList& arguments);

} // namespace quillabrae::platform
