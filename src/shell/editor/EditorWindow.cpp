// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/EditorWindow.h"

#include "platform/QtMimeSource.h"
#include "shell/app/WindowCoordinator.h"
#include "shell/commands/CommandActions.h"
#include "shell/editor/ProjectTabAccessible.h"
#include "shell/editor/ProjectTabBar.h"
#include "shell/editor/QuickToolbar.h"
#include "shell/editor/StatusBar.h"
#include "shell/editor/Workspace.h"
#include "store/DroppedContents.h"
#include "store/ProjectStore.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QVBoxLayout>

namespace quillabrae::shell {

EditorWindow::EditorWindow(store::ProjectStore& store, WindowCoordinator& windows,
                           const CommandActions& actions, services::AppUpdateService* updates)
    : m_windows(windows) {
    setAcceptDrops(true);
    ProjectTabAccessible::install();
    auto* menuBar = new QMenuBar(this);
    actions.fill(*menuBar);
    actions.addKeysTo(*this);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->setMenuBar(menuBar);
    layout->addWidget(new ProjectTabBar(store, windows, updates, this));
    layout->addWidget(new QuickToolbar({store, windows}, this));
    // After what is above it: the Tab key follows the order of making.
    m_workspace = new Workspace(
        {store, windows}, [&windows] { windows.showLayerPropertiesDialog(); }, this);
    layout->addWidget(m_workspace, 1);
    layout->addWidget(new StatusBar(store, this));
}

void EditorWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_workspace->focusCanvas();
}

void EditorWindow::setReducedMotion(bool isReduced) {
    m_workspace->setReducedMotion(isReduced);
}

/// A key of the canvas is no shortcut, wherever the keyboard is.
bool EditorWindow::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        m_workspace->isCanvasKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void EditorWindow::keyPressEvent(QKeyEvent* event) {
    m_workspace->giveKeyToCanvas(*event);
    if (!event->isAccepted()) QWidget::keyPressEvent(event);
}

void EditorWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (store::isDropWelcome(platform::QtMimeSource(*event->mimeData())))
        event->acceptProposedAction();
}

void EditorWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    m_windows.acceptDrop(store::droppedContents(platform::QtMimeSource(*event->mimeData())),
                         WindowRole::editor);
}

} // namespace quillabrae::shell
