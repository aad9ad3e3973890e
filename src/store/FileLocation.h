// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace quillabrae::store {

/// The same place as an absolute URL with neither "." nor ".." nor a slash at its end. A path
/// without a scheme is a file's.
QUrl fileLocation(const QUrl& url);

/// The same with symbolic links followed, as far as the file exists.
QUrl standardizedFileLocation(const QUrl& url);

/// The extension in lower case, without the dot.
QString lowercasedExtension(const QUrl& url);

} // namespace quillabrae::store
