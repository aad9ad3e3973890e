// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace quillabrae::platform {

/// The desktop's own list of recent documents, which other programs and file dialogs show.
class RecentDocuments {
public:
    virtual ~RecentDocuments() = default;
    /// Tells that a project was opened or saved just now. Never fails, never waits.
    virtual void add(const QUrl& project) = 0;
    /// Takes back that this program has used it. Never fails, never waits.
    virtual void remove(const QUrl& project) = 0;
};

} // namespace quillabrae::platform
