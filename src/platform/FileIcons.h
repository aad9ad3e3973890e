// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::platform {

/// Gives a folder an icon in the desktop's file manager, where the desktop has that.
class FileIcons {
public:
    virtual ~FileIcons() = default;
    /// Shows the picture in `imageFile` as the icon of `folder`. Never fails, never waits.
    virtual void setIcon(const QString& folder, const QString& imageFile) = 0;
};

class NoFileIcons final : public FileIcons {
public:
    void setIcon(const QString&, const QString&) override {}
};

} // namespace quillabrae::platform
