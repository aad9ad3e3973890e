// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::platform {

/// Installs packages of the system's own kind.
class PackageInstaller {
public:
    virtual ~PackageInstaller() = default;

    enum class HandOver { done, noInstaller };
    /// Hands a package file over and does not wait: the installer asks the user, and reads the file
    /// as long as it likes.
    virtual HandOver install(const QString& path) = 0;
};

/// The program that the desktop opens packages with.
class XdgPackageInstaller final : public PackageInstaller {
public:
    HandOver install(const QString& path) override;
};

} // namespace quillabrae::platform
