// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileIcons.h"

namespace quillabrae::platform {

/// Icons through GIO metadata, which the GTK desktops' file managers show. Without the `gio`
/// program nothing happens.
class GioFileIcons final : public FileIcons {
public:
    void setIcon(const QString& folder, const QString& imageFile) override;
};

} // namespace quillabrae::platform
