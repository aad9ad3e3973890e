// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Browser.h"

namespace quillabrae::platform {

/// The browser that the desktop is set to.
class DesktopBrowser final : public Browser {
public:
    bool open(const QUrl& page) override;
};

} // namespace quillabrae::platform
