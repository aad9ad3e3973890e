// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;

namespace quillabrae::shell {

struct Deployment;

/// The program from its first window to its end, or the handing of its arguments to the one that
/// runs already. Returns the exit status of the process.
int runProgram(QApplication& application, const Deployment& deployment);

} // namespace quillabrae::shell
