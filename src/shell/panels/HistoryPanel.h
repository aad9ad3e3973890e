// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/FloatingPanel.h"
#include "shell/panels/PanelButtons.h"

#include <span>

namespace quillabrae::shell {

/// The buttons under the history.
std::span<const PanelButton> historyButtons();

/// The steps of the active project, with Undo and Redo.
class HistoryPanel final : public FloatingPanel {
    Q_OBJECT

public:
    explicit HistoryPanel(PanelContext context, QWidget* parent = nullptr);
};

} // namespace quillabrae::shell
