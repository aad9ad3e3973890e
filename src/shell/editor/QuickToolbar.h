// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"

#include <QWidget>

#include <vector>

class QHBoxLayout;

namespace quillabrae::shell {

class IconButton;
class ToolOptions;

/// One button of the quick toolbar. A row without a title is a divider.
struct ToolbarItem {
    const char* title;
    const char* help;
    /// The symbol as the store stands.
    const char* (*symbol)(const store::ProjectStore& store);
    bool (*isEnabled)(const store::ProjectStore& store);
    void (*run)(const CommandContext& context);
};

std::span<const ToolbarItem> quickToolbarItems();

/// The row of buttons under the tabs, followed by the options of the selected tool.
class QuickToolbar final : public QWidget {
    Q_OBJECT

public:
    explicit QuickToolbar(CommandContext context, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Entry {
        const ToolbarItem* item;
        IconButton* button;
    };

    void add(const ToolbarItem& item, QHBoxLayout* layout);
    void followStore();
    void refresh();

    CommandContext m_context;
    std::vector<Entry> m_entries;
};

} // namespace quillabrae::shell
