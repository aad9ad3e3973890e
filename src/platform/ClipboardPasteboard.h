// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Pasteboard.h"

#include <QObject>

#include <functional>

namespace quillabrae::platform {

/// The desktop's clipboard, through Qt. Needs a running QGuiApplication.
///
/// The owner of the contents is another program, which may be changing them at this moment or be
/// slow to answer: where it gives nothing it is asked once more, a moment later.
class ClipboardPasteboard final : public QObject, public Pasteboard {
    Q_OBJECT

public:
    explicit ClipboardPasteboard(QObject* parent = nullptr);
    /// `pause` lets the moment between the two questions pass.
    explicit ClipboardPasteboard(std::function<void()> pause, QObject* parent = nullptr);

    int changeCount() const override { return m_changeCount; }
    QStringList types() const override;
    QByteArray data(const QString& type) const override;
    bool write(std::vector<PasteboardItem> items) override;

private:
    std::function<void()> m_pause;
    int m_changeCount = 0;
};

} // namespace quillabrae::platform
