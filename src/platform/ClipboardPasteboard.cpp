// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace quillabrae::platform {

ClipboardPasteboard::ClipboardPasteboard(QObject* parent) : QObject(parent) {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            [this] { ++m_changeCount; });
}

QStringList ClipboardPasteboard::types() const {
    const QMimeData* contents = QGuiApplication::clipboard()->mimeData();
    return contents ? contents->formats() : QStringList();
}

QByteArray ClipboardPasteboard::data(const QString& type) const {
    const QMimeData* contents = QGuiApplication::clipboard()->mimeData();
    return contents ? contents->data(type) : QByteArray();
}

} // namespace quillabrae::platform
