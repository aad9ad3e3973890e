// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MimeSource.h"

#include <functional>
#include <vector>

namespace quillabrae::platform {

/// One form in which something is copied. The bytes are made when somebody asks for them, which may
/// be long after the copy and never.
struct PasteboardItem {
    QString type;
    std::function<QByteArray()> bytes;
};

/// The system's clipboard.
class Pasteboard : public MimeSource {
public:
    /// Grows with every change of the contents, whoever made it.
    virtual int changeCount() const = 0;
    /// Replaces the contents; false when the system did not take them. The first item is the
    /// favourite.
    virtual bool write(std::vector<PasteboardItem> items) = 0;
};

} // namespace quillabrae::platform
