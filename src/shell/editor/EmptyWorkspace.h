// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"

#include <QWidget>

namespace quillabrae::shell {

/// What the workspace shows while no project is open: a card with the two ways to one.
class EmptyWorkspace final : public QWidget {
    Q_OBJECT

public:
    explicit EmptyWorkspace(const CommandContext& context, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillabrae::shell
