// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settings/SettingsTable.h"

#include <QWidget>

class QStackedWidget;

namespace quillabrae::shell {

class SettingsPane;
class SideList;

/// The settings window: its sections at the side, and the pane of the chosen one. A pane is made
/// when it is first shown.
class PaintSettingsView final : public QWidget {
    Q_OBJECT

public:
    explicit PaintSettingsView(SettingsContext context);

    PaintSettingsSection section() const { return m_section; }
    void showSection(PaintSettingsSection section);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void choose(int row);
    SettingsPane* shownPane() const;

    SettingsContext m_context;
    PaintSettingsSection m_section = PaintSettingsSection::account;
    SideList* m_sections;
    QStackedWidget* m_panes;
};

} // namespace quillabrae::shell
