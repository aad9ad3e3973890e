// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/FocusedText.h"

#include <QLineEdit>
#include <QMetaMethod>
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

} // namespace quillabrae::shell::FocusedText
