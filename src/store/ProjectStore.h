// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/PaintAppSettings.h"
#include "model/PaintHistory.h"
#include "model/PaintProject.h"
#include "model/RecentProject.h"
#include "persistence/RecoverySession.h"
#include "store/StoreEnvironment.h"

#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace quillabrae::model {
struct PastedImage;
}

namespace quillabrae::store {

/// Whether a store reads and writes what outlives the process.
enum class Persistence { off, on };
/// Whether a command reports itself in the status line.
enum class StatusUpdate { silent, shown };

/// The running editor's one state: the open projects, the tool settings, the status line and the
/// histories; and the only place where commands live. Main thread only.
///
/// A command looks the active project up afresh, does nothing when there is none, and reports its
/// outcome in `statusMessage`; nothing here raises an error. Every published field has a signal.
class ProjectStore : public QObject {
    Q_OBJECT

public:
    ProjectStore(StoreEnvironment environment, Persistence persistence);
    ~ProjectStore() override;

    // Published state

    /// The tabs, in tab order.
    const std::vector<model::PaintProject>& openProjects() const { return m_openProjects; }
    std::optional<QUuid> activeProjectID() const { return m_activeProjectID; }
    void setActiveProjectID(std::optional<QUuid> id);
    /// The index of the active project in `openProjects`.
    std::optional<std::size_t> activeIndex() const;
    bool hasActiveProject() const { return activeIndex().has_value(); }
    const model::PaintProject* project(const QUuid& id) const;
    const model::PaintProject* activeProject() const;
    /// Rewrites the active project in place, as a panel or the canvas does, and tells observers.
    /// Neither stamps nor records; returns whether there was a project.
    bool editActiveProject(const std::function<void(model::PaintProject&)>& edit);

    const model::PaintAppSettings& settings() const { return m_settings; }
    /// Changes tool settings, as the interface or a command does; they are stored at once.
    void editSettings(const std::function<void(model::PaintAppSettings&)>& edit);
    /// Writes the settings to the preferences; nothing without persistence.
    void persistSettings();

    const QString& statusMessage() const { return m_statusMessage; }
    void setStatusMessage(const QString& message);
    const std::vector<model::RecentProject>& recents() const { return m_recents; }
    QSizeF canvasViewportSize() const { return m_canvasViewportSize; }
    void setCanvasViewportSize(QSizeF size);
    /// The pointer in whole canvas pixels.
    std::optional<model::CanvasPoint> canvasCursorPosition() const {
        return m_canvasCursorPosition;
    }
    void setCanvasCursorPosition(std::optional<QPointF> point);
    /// Changes whenever the canvas has to centre itself after a fit.
    QUuid zoomToFitRequestID() const { return m_zoomToFitRequestID; }
    bool isPersistent() const { return m_persistence == Persistence::on; }

    // Projects

    model::PaintProject createUntitledProject(double width, double height, double resolutionDPI);
    model::PaintProject createProject(const model::PastedImage& image);
    std::optional<model::PaintProject> createProject(const QUrl& imageFile);
    void closeProject(const QUuid& id);
    /// Asks about unsaved changes first; whether the project was closed.
    bool closeProjectRequestingSave(const QUuid& id);
    bool closeActiveProjectRequestingSave();
    bool hasUnsavedChanges(const QUuid& projectID) const;
    bool isBlankUntouchedProject(const model::PaintProject& project) const;
    bool isProjectUnsaved(const model::PaintProject& project) const;
    /// The project's name for titles; the program's name for an id that is not open.
    QString projectTitle(const QUuid& id) const;

    // History

    model::PaintHistoryState history(const QUuid& projectID) const;
    void recordHistory(const QUuid& projectID, const QString& title, const QString& symbolName);
    void undo(const QUuid& projectID);
    void redo(const QUuid& projectID);
    void restoreHistory(const QUuid& projectID, const QUuid& entryID);

    // View

    void togglePixelGrid();
    void zoomIn();
    void zoomOut();
    /// Whether a fit was made: false without a project or before the viewport's size is known.
    bool performZoomToFitCanvas(StatusUpdate statusUpdate);
    void zoomToFitCanvasWhenReady(const QUuid& projectID);

    // Files

    void saveActiveProject();
    void saveActiveProjectAs();
    bool saveProject(std::size_t index, const persistence::SaveDestination& destination);
    bool saveProjectForClose(const QUuid& projectID);
    /// Asks about every unsaved project in turn; whether the program may end.
    bool shouldTerminateAfterHandlingUnsavedProjects();
    std::optional<model::PaintProject> openProject(const QUrl& url);
    std::optional<model::PaintProject> openProjectFromPanel();
    /// A project package or an image, by its extension.
    std::optional<model::PaintProject> openFile(const QUrl& url);

    // Recents

    void rememberRecent(const QUrl& url);
    void removeRecent(const model::RecentProject& recent);
    void saveRecents();

    // Recovery

    void persistAutosavedSession();
    void restoreAutosavedSession();
    /// The clean end of a run: stores the settings and removes the recovery file.
    void finishSession();
    /// Keeps all open work aside, to be brought back by `reopenClosedWork`. For the window that
    /// closes without asking.
    void setClosedWorkAside();
    bool hasClosedWork() const;
    /// Opens the tabs, histories and fingerprints that were set aside, and forgets them.
    bool reopenClosedWork();

Q_SIGNALS:
    void openProjectsChanged();
    /// One project's content changed.
    void projectChanged(const QUuid& id);
    void activeProjectChanged();
    void settingsChanged();
    void statusMessageChanged();
    void historyChanged(const QUuid& projectID);
    void recentsChanged();
    void canvasViewportSizeChanged();
    void canvasCursorPositionChanged();
    void zoomToFitRequested();
    void closedWorkChanged();

private:
    StoreEnvironment m_environment;
    Persistence m_persistence;
    std::vector<model::PaintProject> m_openProjects;
    std::optional<QUuid> m_activeProjectID;
    model::PaintAppSettings m_settings;
    QString m_statusMessage;
    std::vector<model::RecentProject> m_recents;
    QSizeF m_canvasViewportSize;
    std::optional<model::CanvasPoint> m_canvasCursorPosition;
    QUuid m_zoomToFitRequestID;
    persistence::Histories m_histories;
    persistence::Fingerprints m_savedProjectFingerprints;
};

} // namespace quillabrae::store
