// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace quillabrae::platform {

/// What is to become of a file that is not there.
enum class MissingFile { made, leftOut };

/// The content that takes the place of another one; nothing for one that is to stay.
using ContentChange = std::function<std::optional<QByteArray>(const QByteArray& content)>;

/// Rewrites a small file that other programs rewrite too, with no lock between them. Where one of
/// them was faster, `change` is asked again for what is there now; where that goes on, the file is
/// left to them. Left as it is: what is no file, is very large, or cannot be read or written. One
/// that is made is this user's alone.
void rewriteSharedFile(const QString& path, MissingFile missing, const ContentChange& change);

} // namespace quillabrae::platform
