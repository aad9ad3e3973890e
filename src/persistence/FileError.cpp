// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FileError.h"

#include <QFileInfo>

namespace quillabrae::persistence {
namespace {

QString nameOf(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name;
}

} // namespace

FileError FileError::notWritten(const QString& path, const QString& reason) {
    return FileError(
        QStringLiteral("\u201C%1\u201D could not be written: %2.").arg(nameOf(path), reason));
}

FileError FileError::notRead(const QString& path, const QString& reason) {
    return FileError(
        QStringLiteral("\u201C%1\u201D could not be read: %2.").arg(nameOf(path), reason));
}

} // namespace quillabrae::persistence
