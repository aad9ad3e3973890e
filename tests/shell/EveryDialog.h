// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/ProjectStore.h"

#include <QString>
#include <QWidget>

#include <functional>

namespace quillabrae::shell {

/// Makes each dialog of the commands over `host`, one after the other, and shows it to `visit`
/// under a name for messages.
void visitDialogs(store::ProjectStore& store, QWidget* host,
                  const std::function<void(QWidget& dialog, const QString& name)>& visit);

} // namespace quillabrae::shell
