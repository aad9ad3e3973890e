// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Pasteboard.h"

#include <QMimeData>
#include <QObject>
#include <QPointer>

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

    /// Turns the order of an own copy's forms around. Happens by itself when the program ends: then
    /// the desktop's clipboard manager takes the forms over, and one that is in wide use loses the
    /// first of them, which must not be the favourite.
    void leaveBehind();

private:
    std::function<void()> m_pause;
    std::vector<PasteboardItem> m_items;
    QPointer<QMimeData> m_written;
    int m_changeCount = 0;
};

} // namespace quillabrae::platform
