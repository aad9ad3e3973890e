// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/WindowCoordinator.h"

#include "effects/PluginLibraryService.h"
#include "model/PaintProject.h"
#include "model/PastedImage.h"
#include "model/RecentProject.h"
#include "platform/Preferences.h"
#include "shell/app/WindowFactory.h"
#include "shell/commands/FocusedText.h"
#include "shell/dialogs/Dialogs.h"
#include "store/DroppedContents.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <algorithm>

namespace quillabrae::shell {
namespace {

const auto paintNetQuickStartSeenKey = QStringLiteral("Quillabrae.paintNetQuickStartSeen");
constexpr QSizeF defaultCanvasSize{900.0, 620.0};

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

WindowCoordinator::WindowCoordinator(WindowEnvironment environment, QObject* parent)
    : QObject(parent), m_environment(std::move(environment)) {
    const store::ProjectStore* store = &m_environment.store;
    const auto refresh = &WindowCoordinator::refreshEditorTitle;
    connect(store, &store::ProjectStore::activeProjectChanged, this, refresh);
    connect(store, &store::ProjectStore::openProjectsChanged, this, refresh);
    connect(store, &store::ProjectStore::projectChanged, this, refresh);
}

WindowCoordinator::~WindowCoordinator() {
    for (const Slot& window : m_windows) {
        if (window != nullptr) window->removeEventFilter(this);
    }
}

// Showing

bool WindowCoordinator::show(WindowRole role) {
    Slot& window = slot(role);
    const bool isNew = window == nullptr;
    if (isNew) {
        window = m_environment.factory.makeWindow(role, *this);
        window->installEventFilter(this);
        if (role == WindowRole::editor) refreshEditorTitle();
    }
    bringToFront(*window);
    return isNew;
}

void WindowCoordinator::showEditorWindow(std::optional<QUuid> selecting) {
    if (selecting.has_value()) {
        m_environment.store.setActiveProjectID(selecting);
        m_environment.store.persistAutosavedSession();
    }
    if (!show(WindowRole::editor)) refreshEditorTitle();
}

void WindowCoordinator::showWelcome() {
    if (show(WindowRole::welcome)) showQuickStartOnce();
}

void WindowCoordinator::showQuickStartOnce() {
    platform::Preferences& preferences = m_environment.preferences;
    if (preferences.boolean(paintNetQuickStartSeenKey, false)) return;
    preferences.setValue(paintNetQuickStartSeenKey, true);
    QTimer::singleShot(0, this, &WindowCoordinator::showPaintNetQuickStart);
}

void WindowCoordinator::showWelcomeIfNoVisibleWindows() {
    if (visibleWindowCount() == 0) {
        showWelcome();
        return;
    }
    const auto visible = std::ranges::find_if(
        m_windows, [](const Slot& window) { return window != nullptr && window->isVisible(); });
    bringToFront(**visible);
}

void WindowCoordinator::showPluginLibrary() {
    show(WindowRole::pluginLibrary);
}

void WindowCoordinator::runPlugin(const QString& id) {
    const effects::PluginLibraryService& library = m_environment.plugins;
    const effects::QuillabraePlugin* const plugin = library.plugin(id);
    if (!plugin || !library.installedPluginIDs().contains(id)) return showPluginLibrary();
    m_environment.store.applyPlugin(*plugin);
}

void WindowCoordinator::showPaintNetQuickStart() {
    show(WindowRole::paintNetQuickStart);
}

void WindowCoordinator::showSettings() {
    show(WindowRole::settings);
}

void WindowCoordinator::reopen() {
    const bool hasVisibleWindows = std::ranges::any_of(
        m_windows, [](const Slot& window) { return window != nullptr && window->isVisible(); });
    if (!hasVisibleWindows) {
        showWelcome();
        return;
    }
    // From the back to the front, so that the editor ends foremost.
    std::for_each(m_windows.rbegin(), m_windows.rend(), [](const Slot& window) {
        if (window != nullptr && window->isVisible()) bringToFront(*window);
    });
}

int WindowCoordinator::visibleWindowCount() const {
    int count = 0;
    for (const WindowRole role :
         {WindowRole::editor, WindowRole::pluginLibrary, WindowRole::paintNetQuickStart}) {
        const QWidget* candidate = window(role);
        if (candidate != nullptr && candidate->isVisible()) ++count;
    }
    return count;
}

QWidget* WindowCoordinator::window(WindowRole role) const {
    return m_windows[static_cast<std::size_t>(role)].get();
}

QWidget* WindowCoordinator::dialogParent() const {
    for (const WindowRole role : {WindowRole::editor, WindowRole::welcome}) {
        if (QWidget* parent = window(role)) return parent;
    }
    return QApplication::activeWindow();
}

void WindowCoordinator::refreshEditorTitle() {
    QWidget* editor = window(WindowRole::editor);
    if (editor == nullptr) return;
    const store::ProjectStore& store = m_environment.store;
    const QString project =
        store.hasActiveProject() ? store.projectTitle(*store.activeProjectID()) : QString();
    editor->setWindowTitle(editorWindowTitle(project, QCoreApplication::applicationVersion()));
}

// Opening

void WindowCoordinator::succeedWith(const QUuid& projectID) {
    closeWelcome();
    showEditorWindow(projectID);
}

void WindowCoordinator::createNewProject() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentNewProjectDialog);
}

void WindowCoordinator::presentNewProjectDialog() {
    const QSizeF size =
        m_environment.store.clipboard().pastedImageSize().value_or(defaultCanvasSize);
    const auto answer = m_environment.dialogs.requestNewProject(size, dialogParent());
    if (!answer.has_value()) return;
    const model::PaintProject project = m_environment.store.createUntitledProject(
        answer->width, answer->height, answer->resolutionDPI);
    succeedWith(project.id);
}

void WindowCoordinator::openProjectFromPanel() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentOpenProjectFromPanel);
}

void WindowCoordinator::presentOpenProjectFromPanel() {
    if (const auto project = m_environment.store.openProjectFromPanel()) succeedWith(project->id);
}

void WindowCoordinator::openImageAsNewProject(const model::PastedImage& image) {
    QTimer::singleShot(0, this, [this, image] {
        succeedWith(m_environment.store.createProject(image, QStringLiteral("clipboard")).id);
    });
}

void WindowCoordinator::openRecent(const model::RecentProject& recent) {
    if (const auto project = m_environment.store.openProject(recent.url)) succeedWith(project->id);
}

void WindowCoordinator::openFiles(const QList<QUrl>& files) {
    for (const QUrl& file : files) {
        if (const auto project = m_environment.store.openFile(file)) succeedWith(project->id);
    }
}

void WindowCoordinator::acceptDrop(const store::DroppedContents& contents, WindowRole role) {
    const auto target =
        role == WindowRole::welcome ? store::DropTarget::welcome : store::DropTarget::editor;
    QTimer::singleShot(0, this, [this, contents, target] {
        if (const auto project = m_environment.store.acceptDrop(contents, target))
            succeedWith(project->id);
    });
}

void WindowCoordinator::pasteImageFromClipboard() {
    QTimer::singleShot(0, this, &WindowCoordinator::presentPasteImageFromClipboard);
}

bool WindowCoordinator::shouldOpenClipboardImageAsProject() const {
    if (window(WindowRole::editor) == nullptr) return true;
    const QWidget* welcome = window(WindowRole::welcome);
    return welcome != nullptr && welcome->isActiveWindow();
}

void WindowCoordinator::presentPasteImageFromClipboard() {
    const bool opensProject = shouldOpenClipboardImageAsProject();
    QPointer<QWidget> focused = QApplication::focusWidget();
    const auto image = m_environment.store.imageOnClipboard();
    if (!image) {
        FocusedText::invoke(focused, "paste()");
        return;
    }
    if (opensProject)
        openImageAsNewProject(*image);
    else if (const auto project = m_environment.store.pasteImage(*image))
        succeedWith(project->id);
}

void WindowCoordinator::reopenClosedWork() {
    store::ProjectStore& store = m_environment.store;
    if (!store.reopenClosedWork()) {
        store.setStatusMessage(tr("Reopen failed: the closed work could not be read"),
                               store::StatusKind::failure);
        return;
    }
    closeWelcome();
    showEditorWindow(store.activeProjectID());
}

// Closing

void WindowCoordinator::selectProject(const QUuid& id) {
    m_environment.store.setActiveProjectID(id);
    m_environment.store.persistAutosavedSession();
    refreshEditorTitle();
}

void WindowCoordinator::closeProject(const QUuid& id) {
    afterClosing(m_environment.store.closeProjectRequestingSave(id));
}

void WindowCoordinator::closeActiveProject() {
    afterClosing(m_environment.store.closeActiveProjectRequestingSave());
}

void WindowCoordinator::afterClosing(bool wasClosed) {
    if (!wasClosed) return;
    if (m_environment.store.activeProjectID().has_value()) {
        refreshEditorTitle();
    } else if (QWidget* editor = window(WindowRole::editor)) {
        editor->close();
    }
}

void WindowCoordinator::closeWelcome() {
    if (QWidget* welcome = window(WindowRole::welcome)) welcome->close();
}

void WindowCoordinator::closeEmptyEditor() {
    QWidget* editor = window(WindowRole::editor);
    if (editor == nullptr || m_environment.store.hasActiveProject()) return;
    editor->close();
    showWelcome();
}

void WindowCoordinator::requestQuit() {
    QTimer::singleShot(0, this, &WindowCoordinator::quitRequested);
}

std::optional<WindowRole> WindowCoordinator::roleOf(const QObject* object) const {
    const auto found = std::ranges::find(m_windows, object, &Slot::get);
    if (found == m_windows.end()) return std::nullopt;
    return static_cast<WindowRole>(found - m_windows.begin());
}

bool WindowCoordinator::eventFilter(QObject* watched, QEvent* event) {
    const auto role = roleOf(watched);
    if (role == WindowRole::editor && event->type() == QEvent::WindowActivate) windowDidBecomeKey();
    if (role.has_value() && event->type() == QEvent::Close && !windowWillClose(*role)) {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void WindowCoordinator::windowDidBecomeKey() {
    store::ProjectStore& store = m_environment.store;
    if (!store.activeProjectID().has_value()) return;
    store.setActiveProjectID(store.activeProjectID());
    store.persistAutosavedSession();
}

bool WindowCoordinator::windowWillClose(WindowRole role) {
    if (role == WindowRole::editor && !closeAllProjects()) return false;
    // The window is in the middle of its own close event, so it goes a little later.
    QWidget* closing = slot(role).release();
    closing->removeEventFilter(this);
    closing->deleteLater();
    return true;
}

bool WindowCoordinator::closeAllProjects() {
    store::ProjectStore& store = m_environment.store;
    const auto& projects = store.openProjects();
    const bool hasUnsavedWork = std::ranges::any_of(
        projects, [&store](const auto& project) { return store.hasUnsavedChanges(project.id); });
    if (hasUnsavedWork && !store.setClosedWorkAside()) {
        store.setStatusMessage(tr("Close cancelled: the open work could not be kept"));
        return false;
    }
    store.closeAllProjects();
    return true;
}

} // namespace quillabrae::shell
