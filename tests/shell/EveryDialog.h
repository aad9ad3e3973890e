// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Alert.h"
#include "store/ProjectStore.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

namespace quillabrae::shell {

/// Makes each dialog of the commands, that for feedback and the one of work that takes long over
/// `host`, one after the other, and shows it to `visit` under a name for messages.
void visitDialogs(store::ProjectStore& store, QWidget* host,
                  const std::function<void(QWidget& dialog, const QString& name)>& visit);

/// The questions and messages of the program, with names of some length in them.
std::vector<Alert> everyAlert();

} // namespace quillabrae::shell
