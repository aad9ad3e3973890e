// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/AccountPane.h"

#include "shell/controls/Labels.h"

#include <QLabel>

namespace quillabrae::shell {

QWidget* makeAccountPane(const SettingsContext&, QWidget* parent) {
    QLabel* note =
        Labels::muted(QStringLiteral("This version of Quillabrae has no accounts. Everything works "
                                     "without one."),
                      parent);
    note->setWordWrap(true);
    return note;
}

} // namespace quillabrae::shell
