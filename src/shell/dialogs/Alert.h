// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>
#include <QString>
#include <QStringList>

class QWidget;

namespace quillabrae::store {
enum class PasteTarget;
}

namespace quillabrae::shell {

/// A question: a message, what it means, and the answers in order. The first answer is the default;
/// one that is titled "Cancel" also answers to Escape and to the close button.
struct Alert {
    QString message;
    QString informativeText;
    QStringList buttons;

    friend bool operator==(const Alert&, const Alert&) = default;
};

/// Asks and waits. The index of the chosen button; that of the last one when the alert was closed.
int runAlert(const Alert& alert, QWidget* parent);

/// The alerts of opening, saving and pasting.
namespace Alerts {
Alert flattenBeforeSaving(int layerCount);
Alert replaceFile(const QString& fileName);
Alert saveBeforeClosing(const QString& projectTitle);
Alert pasteImage(QSizeF imageSize, store::PasteTarget target);
} // namespace Alerts

} // namespace quillabrae::shell
