// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/ClipboardImageSize.h"

#include "platform/ClipboardPasteboard.h"

#include <QBuffer>
#include <QImageReader>

namespace quillabrae::shell {

std::optional<QSizeF> clipboardImageSize() {
    const platform::ClipboardPasteboard pasteboard;
    const QStringList types = pasteboard.types();
    for (const QString& type : types) {
        if (!type.startsWith(QLatin1StringView("image/"))) continue;
        QByteArray bytes = pasteboard.data(type);
        QBuffer buffer(&bytes);
        const QSize size = QImageReader(&buffer).size();
        if (size.isValid() && !size.isEmpty()) return QSizeF(size);
    }
    return std::nullopt;
}

} // namespace quillabrae::shell
