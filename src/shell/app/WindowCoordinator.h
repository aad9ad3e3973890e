// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/app/WindowRole.h"

#include <QList>
#include <QObject>
#include <QUrl>
#include <QUuid>

#include <array>
#include <memory>
#include <optional>

class QWidget;

namespace quillabrae::model {
struct PaintProject;
struct PastedImage;
struct RecentProject;
} // namespace quillabrae::model

namespace quillabrae::platform {
class Preferences;
}

namespace quillabrae::effects {
class PluginLibraryService;
}

namespace quillabrae::store {
class ProjectStore;
struct DroppedContents;
} // namespace quillabrae::store

namespace quillabrae::shell {

class Dialogs;
class WindowFactory;
enum class ResizeDialogMode;

/// What the coordinator needs of the world. All outlive it.
struct WindowEnvironment {
    store::ProjectStore& store;
    platform::Preferences& preferences;
    WindowFactory& factory;
    Dialogs& dialogs;
    effects::PluginLibraryService& plugins;
};

/// Owns the program's windows and leads every command that needs one to it. Operations that run a
/// dialog are put off until the event that asked for them is over.
class WindowCoordinator final : public QObject {
    Q_OBJECT

public:
    explicit WindowCoordinator(WindowEnvironment environment, QObject* parent = nullptr);
    ~WindowCoordinator() override;

    /// Shows the editor window, with the project's tab in front when one is given.
    void showEditorWindow(std::optional<QUuid> selecting);
    void showWelcome();
    void showWelcomeIfNoVisibleWindows();
    void showPluginLibrary();
    effects::PluginLibraryService& plugins() const { return m_environment.plugins; }
    /// Runs an installed plugin on the active project; for any other id shows the library.
    void runPlugin(const QString& id);
    void showPaintNetQuickStart();
    void showSettings();
    /// Brings the program to the user, who has started it once more: its visible windows, or the
    /// welcome window when there are none.
    void reopen();

    void createNewProject();
    void openProjectFromPanel();
    void showResizeDialog(ResizeDialogMode mode);
    void showRotateZoomDialog();
    void showLayerPropertiesDialog();
    void showAlignObjectDialog();
    void showColorRemovalDialog();
    void showGenerativeFillDialog();
    void showFeedbackDialog();
    void openImageAsNewProject(const model::PastedImage& image);
    /// Opens a recent project; a failure is in the store's status message.
    void openRecent(const model::RecentProject& recent);
    /// Opens packages and images in turn, and shows the last that could be opened.
    void openFiles(const QList<QUrl>& files);
    /// Takes in what was dropped on the editor or the welcome window.
    void acceptDrop(const store::DroppedContents& contents, WindowRole role);
    /// Pastes the image on the clipboard: as a project of its own where there is no editor window
    /// or the welcome window is the active one. Without an image the control that has the keyboard
    /// pastes what it can.
    void pasteImageFromClipboard();
    /// Brings back what the editor window's close button set aside.
    void reopenClosedWork();

    void selectProject(const QUuid& id);
    /// Asks about unsaved changes first. The editor window goes with its last tab.
    void closeProject(const QUuid& id);
    void closeActiveProject();
    void closeWelcome();
    /// Closes an editor window that has no tab, in favour of the welcome window.
    void closeEmptyEditor();
    /// Asks for the end of the program once the current event is over.
    void requestQuit();

    /// Where a dialog belongs: the editor window, else the welcome window, else the active one.
    QWidget* dialogParent() const;
    QWidget* window(WindowRole role) const;
    /// Whether any window is on the screen; the welcome window does not count.
    int visibleWindowCount() const;

Q_SIGNALS:
    void quitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Slot = std::unique_ptr<QWidget>;

    Slot& slot(WindowRole role) { return m_windows[static_cast<std::size_t>(role)]; }
    std::optional<WindowRole> roleOf(const QObject* object) const;
    /// Whether the window had to be made.
    bool show(WindowRole role);
    void refreshEditorTitle();
    void succeedWith(const QUuid& projectID);
    void afterClosing(bool wasClosed);
    void presentNewProjectDialog();
    void presentOpenProjectFromPanel();
    void presentPasteImageFromClipboard();
    void presentResizeDialog(ResizeDialogMode mode);
    void presentRotateZoomDialog();
    void presentLayerPropertiesDialog();
    void presentAlignObjectDialog();
    void presentColorRemovalDialog();
    void presentGenerativeFillDialog();
    bool shouldOpenClipboardImageAsProject() const;
    void showQuickStartOnce();
    /// Whether the window may close.
    bool windowWillClose(WindowRole role);
    bool closeAllProjects();
    void windowDidBecomeKey();

    WindowEnvironment m_environment;
    std::array<Slot, windowRoleCount> m_windows;
};

} // namespace quillabrae::shell
