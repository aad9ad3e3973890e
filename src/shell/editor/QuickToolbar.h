// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"

#include <QWidget>

#include <vector>

class QHBoxLayout;

namespace quillabrae::shell {

class IconButton;
class SidewaysScroller;
class ToolOptions;

/// One button of the quick toolbar, which shows and does what its command's row says; or a divider.
struct ToolbarItem {
    CommandID id = CommandID::divider;
    /// In place of the command's title; null for that.
    const char* ownTitle = nullptr;
    /// Of a command that turns something on and off, with the symbol while it is on; else null.
    bool (*isOn)(const store::ProjectStore& store) = nullptr;
    const char* symbolWhenOn = nullptr;

    bool isDivider() const { return id == CommandID::divider; }
    QString title() const;
    /// The symbol as the store stands.
    const char* symbol(const store::ProjectStore& store) const;
};

std::span<const ToolbarItem> quickToolbarItems();

/// The row of buttons under the tabs, followed by the options of the selected tool. On a screen
/// that is too narrow for it, it scrolls.
class QuickToolbar final : public QWidget {
    Q_OBJECT

public:
    explicit QuickToolbar(CommandContext context, QWidget* parent = nullptr);

    /// So wide that nothing of it has to be scrolled.
    QSize minimumSizeHint() const override;

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
    SidewaysScroller* m_scroller = nullptr;
};

} // namespace quillabrae::shell
