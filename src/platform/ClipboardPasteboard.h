// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Pasteboard.h"

#include <QObject>

namespace quillabrae::platform {

/// The desktop's clipboard, through Qt. Needs a running QGuiApplication.
class ClipboardPasteboard final : public QObject, public Pasteboard {
    Q_OBJECT

public:
    explicit ClipboardPasteboard(QObject* parent = nullptr);

    int changeCount() const override { return m_changeCount; }
    QStringList types() const override;
    QByteArray data(const QString& type) const override;

private:
    int m_changeCount = 0;
};

} // namespace quillabrae::platform
