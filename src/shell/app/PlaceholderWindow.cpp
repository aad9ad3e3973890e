// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/PlaceholderWindow.h"

#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"

#include <QLabel>
#include <QVBoxLayout>

namespace quillabrae::shell {

PlaceholderWindow::PlaceholderWindow(const QString& title, const QString& text) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4 * Style::grid, 4 * Style::grid, 4 * Style::grid, 4 * Style::grid);
    layout->setSpacing(Style::grid);
    layout->addStretch(2);
    layout->addWidget(Labels::title(title, 1.5, this), 0, Qt::AlignHCenter);
    layout->addWidget(Labels::muted(text, this), 0, Qt::AlignHCenter);
    layout->addStretch(3);
}

} // namespace quillabrae::shell
