// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

#include <optional>

namespace quillabrae::platform {

/// The URL of an absolute file of this machine, without a host and with one slash before its path,
/// so that it stays valid on the way through other forms. Nothing for a URL of anything else: of
/// another machine's file, of a relative path, or of a resource of the program itself.
std::optional<QUrl> fileOfThisMachine(QUrl url);

} // namespace quillabrae::platform
