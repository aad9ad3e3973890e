// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace quillabrae::services {
class AppUpdateService;
}

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class CommandActions;
class WindowCoordinator;
class Workspace;

/// The content of the editor window: menus, tabs, quick toolbar, workspace and status bar. Files
/// that are dropped on it open as tabs.
class EditorWindow final : public QWidget {
    Q_OBJECT

public:
    EditorWindow(store::ProjectStore& store, WindowCoordinator& windows,
                 const CommandActions& actions, services::AppUpdateService* updates = nullptr);

    /// Whether things are to stand still, for people who do not want motion.
    void setReducedMotion(bool isReduced);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    WindowCoordinator& m_windows;
    Workspace* m_workspace = nullptr;
};

} // namespace quillabrae::shell
