// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace quillabrae::platform {

/// The user's web browser.
class Browser {
public:
    virtual ~Browser() = default;

    /// Shows a page. False when there is nothing to show it with; whether the browser shows it
    /// nobody can tell.
    virtual bool open(const QUrl& page) = 0;
};

} // namespace quillabrae::platform
