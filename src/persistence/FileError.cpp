// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FileError.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quillabrae::persistence {
namespace {

/// The context of this file's texts, for translators.
struct FileErrorTexts {
    Q_DECLARE_TR_FUNCTIONS(FileErrorTexts)
};

QString nameOf(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name;
}

/// `pattern` with the name of what is at `path` and a reason that may or may not end in a full
/// stop.
FileError sentence(const QString& pattern, const QString& path, const QString& reason) {
    const bool hasFullStop = reason.endsWith(u'.');
    return FileError(pattern.arg(nameOf(path), hasFullStop ? reason.chopped(1) : reason));
}

} // namespace

FileError FileError::notWritten(const QString& path, const QString& reason) {
    return sentence(FileErrorTexts::tr("“%1” could not be written: %2."), path, reason);
}

FileError FileError::notRead(const QString& path, const QString& reason) {
    return sentence(FileErrorTexts::tr("“%1” could not be read: %2."), path, reason);
}

} // namespace quillabrae::persistence
