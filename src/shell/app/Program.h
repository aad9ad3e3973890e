// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class QApplication;

namespace quillabrae::shell {

struct Deployment;

/// The program from its first window to its end, or the handing of what it is asked for to the one
/// that runs already. `activationToken` is what the desktop started it with. Returns the exit
/// status of the process.
int runProgram(QApplication& application, const Deployment& deployment,
               const QByteArray& activationToken = {});

} // namespace quillabrae::shell
