// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quillabrae::platform {

/// The system's clipboard.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;
    /// Grows with every change of the contents, whoever made it.
    virtual int changeCount() const = 0;
    /// The MIME types on offer, the owner's favourite first.
    virtual QStringList types() const = 0;
    /// The contents as `type`; empty when that is not on offer.
    virtual QByteArray data(const QString& type) const = 0;
};

} // namespace quillabrae::platform
