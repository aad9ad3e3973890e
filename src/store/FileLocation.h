// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace quillabrae::store {

/// The same place as an absolute URL with neither "." nor ".." nor a slash at its end. A path
/// without a scheme is a file's. The file system is not asked.
QUrl fileLocation(const QUrl& url);

/// The same with symbolic links followed, as far as the file exists. Asks the file system, which
/// may take long on a network.
QUrl standardizedFileLocation(const QUrl& url);

/// The extension in lower case, without the dot.
QString lowercasedExtension(const QUrl& url);

} // namespace quillabrae::store
