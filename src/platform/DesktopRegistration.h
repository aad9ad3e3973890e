// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::platform {

/// Tells the desktop that this program is the one that opens its projects.
class DesktopRegistration {
public:
    virtual ~DesktopRegistration() = default;
    /// Claims the project type. Never fails, never waits.
    virtual void claimProjectType() = 0;
};

class NoDesktopRegistration final : public DesktopRegistration {
public:
    void claimProjectType() override {}
};

/// The claim as the freedesktop tools know it; takes effect where the program's desktop file and
/// type are installed.
class XdgDesktopRegistration final : public DesktopRegistration {
public:
    void claimProjectType() override;
};

} // namespace quillabrae::platform
