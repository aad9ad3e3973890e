// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DetachedCommand.h"

#include <QProcess>
#include <QStandardPaths>

namespace quillabrae::platform {

void startDetached(const QString& program, const QStringList& arguments) {
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) return;
    QProcess process;
    process.setProgram(path);
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.startDetached();
}

} // namespace quillabrae::platform
