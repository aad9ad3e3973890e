// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/HoverTooltip.h"

#include <QWidget>

#include <functional>
#include <span>
#include <vector>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class IconButton;

/// What a panel's buttons work on.
struct PanelContext {
    store::ProjectStore& store;
    /// Opens the properties of the selected layer.
    std::function<void()> configureLayer;
};

/// One button of a panel.
struct PanelButton {
    const char* title;
    const char* symbol;
    const char* help;
    bool (*isEnabled)(const store::ProjectStore& store);
    void (*run)(const PanelContext& context);
};

/// A row of buttons made from a table, kept enabled as the store stands.
class PanelButtons final : public QWidget {
    Q_OBJECT

public:
    PanelButtons(std::span<const PanelButton> table, PanelContext context,
                 QWidget* parent = nullptr);

private:
    struct Entry {
        const PanelButton* row = nullptr;
        IconButton* button = nullptr;
    };

    void refresh();

    PanelContext m_context;
    std::vector<Entry> m_entries;
};

} // namespace quillabrae::shell
