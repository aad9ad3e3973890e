// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/FocusedText.h"

#include <QLineEdit>
#include <QMetaMethod>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWidget>

namespace quillabrae::shell::FocusedText {

void invoke(QWidget* control, const char* slot) {
    if (control == nullptr) return;
    QObject* field = control->findChild<QLineEdit*>();
    if (field == nullptr) field = control;
    const QMetaObject* type = field->metaObject();
    const int index = type->indexOfSlot(slot);
    if (index >= 0) type->method(index).invoke(field);
}

bool isIn(const QWidget* control) {
    if (control == nullptr) return false;
    return qobject_cast<const QLineEdit*>(control) != nullptr ||
           qobject_cast<const QTextEdit*>(control) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(control) != nullptr ||
           control->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly) != nullptr;
}

} // namespace quillabrae::shell::FocusedText
