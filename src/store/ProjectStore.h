// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/PaintAppSettings.h"
#include "model/PaintHistory.h"
#include "model/PaintProject.h"
#include "model/RecentProject.h"
#include "persistence/RecoveryFolder.h"
#include "persistence/RecoverySession.h"
#include "store/ClipboardImageService.h"
#include "store/DialogResults.h"
#include "store/RepeatablePaintAction.h"
#include "store/StoreEnvironment.h"

#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillabrae::effects {
struct QuillabraePlugin;
}

namespace quillabrae::platform {
struct HttpProgress;
}

namespace quillabrae::raster {
class RasterImage;
}

namespace quillabrae::store {

struct CanvasRewrite;
struct DroppedContents;
struct GenerativeFillInput;
struct Intake;

/// Whether a store reads and writes what outlives the process.
enum class Persistence { off, on };
/// Whether the status line tells of work that went well, or that the user left, or of a failure.
enum class StatusKind { news, failure };
/// Whether a command reports itself in the status line.
enum class StatusUpdate { silent, shown };
/// Whether a step of a command reports itself or is part of what the command reports.
enum class HistoryRecording { omitted, recorded };

/// What pasting does to the canvas.
enum class PastedCanvas { kept, expanded };
/// How an adjustment is made: as a command, as a try that the status line tells of, or unseen.
enum class AdjustmentRun { recorded, preview, silent };
/// What a drop fell on.
enum class DropTarget { editor, welcome };

/// The running editor's one state: the open projects, the tool settings, the status line and the
/// histories; and the only place where commands live. Main thread only.
///
/// A command looks the active project up afresh, does nothing when there is none, and reports its
/// outcome in `statusMessage`; nothing here raises an error. Every published field has a signal,
/// which is sent when the field's value has changed and not before the command has written all that
/// belongs together. A project that is handed out by pointer or reference is valid until the next
/// call that is not const.
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
    /// The index of the active project in `openProjects`; nothing when `activeProjectID` is absent
    /// or names no open project.
    std::optional<std::size_t> activeIndex() const;
    bool hasActiveProject() const { return activeIndex().has_value(); }
    const model::PaintProject* project(QUuid id) const;
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
    void setStatusMessage(const QString& message, StatusKind kind = StatusKind::news);
    StatusKind statusKind() const { return m_statusKind; }
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
    /// What can be run again, on any project; neither stored nor undone.
    const std::optional<RepeatablePaintAction>& lastRepeatableAction() const {
        return m_lastRepeatableAction;
    }
    bool isPersistent() const { return m_persistence == Persistence::on; }

    /// The widths that the shape outline's menu offers, in canvas pixels: 1 to 32.
    static std::vector<double> availableShapeOutlineWidths();
    /// The system's font families, sorted. Asks the system at every call, which is slow the first
    /// time.
    static QStringList availableTextFontFamilies();
    /// The preferred family where the system has it, else its first one.
    static QString defaultTextFontFamily();

    // Projects

    /// A white canvas of one layer. Sizes are rounded to whole numbers of at least 1.
    model::PaintProject createUntitledProject(double width, double height, double resolutionDPI);
    /// A canvas of the image's size that holds it, selected whole. `analyticsSource` is where users
    /// got it from, as usage events tell it; without one it is not counted.
    model::PaintProject createProject(const model::PastedImage& image,
                                      const std::optional<QString>& analyticsSource = {});
    /// A project attached to an image file, unmodified: saving it writes that image again.
    std::optional<model::PaintProject> createProject(const QUrl& imageFile);
    /// Closes without asking.
    void closeProject(QUuid id);
    /// Closes every tab without asking, as one change.
    void closeAllProjects();
    /// Asks about unsaved changes first; whether the project was closed.
    bool closeProjectRequestingSave(QUuid id);
    bool closeActiveProjectRequestingSave();
    bool hasUnsavedChanges(QUuid projectID) const;
    /// Whether the project is new and nothing was ever done in it.
    bool isBlankUntouchedProject(const model::PaintProject& project) const;
    /// Whether the project has no file or differs from what was last saved or opened.
    bool isProjectUnsaved(const model::PaintProject& project) const;
    /// The project's name for titles; the program's name for an id that is not open.
    QString projectTitle(QUuid id) const;

    // History

    /// The history of a project; an empty one for an id without any.
    const model::PaintHistoryState& history(QUuid projectID) const;
    /// Ends an edit: drops the entries that could be redone and adds the project as it stands,
    /// unless it equals the entry it stands at. The caller has stamped `lastModified`.
    void recordHistory(QUuid projectID, const QString& title, const QString& symbolName);
    void undo(QUuid projectID);
    void redo(QUuid projectID);
    /// Brings the project back to an entry's state, in its tab and with its present file.
    void restoreHistory(QUuid projectID, QUuid entryID);

    // Layers: the active project's list, and in it the layer that is selected

    void addLayer();
    /// Leaves the last layer alone.
    void deleteSelectedLayer();
    void duplicateSelectedLayer();
    /// Up the stack by a positive offset.
    void moveSelectedLayer(int offset);
    /// Merges a layer into the one beneath it, with both opacities baked in.
    void flattenLayerDown(QUuid layerID);
    /// A new top layer with the picture of a file that the user chooses, at the canvas's top left.
    void importLayerFromFile();
    std::optional<model::PaintLayer> selectedLayerForProperties() const;
    void applySelectedLayerProperties(const LayerPropertiesDialogResult& result);

    // Selection

    /// Puts floating pixels down on their layer, locked or not, which ends the selection. Whether
    /// there were any that could be put down.
    bool commitFloatingSelectionIfNeeded(std::size_t projectIndex, HistoryRecording recording);
    void selectAllCanvas();
    /// Puts floating pixels down, or else deselects a selected canvas.
    void dropSelection();
    bool canDropSelection() const;
    /// Copies the floating pixels or the selected ones of the selected layer. Whether the clipboard
    /// took them.
    bool copySelectedCanvasPixels();
    /// Copies, and takes the pixels away; an outline stays around the hole. False, with nothing
    /// changed, for a locked layer too.
    bool cutSelectedCanvasPixels();

    // Image and canvas

    /// Scales every layer with the canvas. Floating pixels are discarded.
    void resizeActiveImage(const ResizeDialogResult& result);
    /// Gives the canvas room or takes it, around the pixels as they are. Floating pixels are
    /// discarded.
    void resizeActiveCanvas(const ResizeDialogResult& result);
    /// Crops the canvas to what is not transparent on any layer, hidden ones included.
    void trimTransparentWhitespace();
    /// Inverts the selected layer's colours within the selection, or all of them.
    void invertActiveImage();
    void flipSelectedLayer(FlipDirection direction);
    void rotateZoomSelectedLayer(const RotateZoomDialogResult& result);
    /// Runs a plugin's effect on the whole of the selected layer, whatever is selected. Whether it
    /// did.
    bool applyPlugin(const effects::QuillabraePlugin& plugin);

    // Adjustments of the selected layer. Their dialogs show each try on the open project: `begin`
    // keeps the project as it is, a try starts from that again, and only `commit` records.

    /// Moves the opaque pixels within the selection, or on the whole canvas. Whether any moved.
    bool applyAlignObject(AlignObjectAction action, AdjustmentRun run);
    void beginAlignObjectPreview();
    void restoreAlignPreviewOriginal();
    bool previewAlignObject(AlignObjectAction action);
    void cancelAlignObjectPreview();
    void commitAlignObjectPreview();
    /// The choice whose effect is shown now.
    std::optional<AlignObjectAction> alignPreviewAction() const;
    /// Takes a colour out of the whole layer, whatever is selected. Whether it was there.
    bool applyColorRemoval(const ColorRemovalSettings& settings, AdjustmentRun run);
    void beginColorRemovalPreview();
    /// Asks for a try, which is shown when it is made; newer settings overtake older ones.
    void previewColorRemoval(const ColorRemovalSettings& settings);
    void cancelColorRemovalPreview();
    /// Waits for the latest try.
    void commitColorRemovalPreview();
    std::optional<ColorRemovalSettings> colorRemovalPreviewSettings() const;

    /// Runs an edit that somebody else makes through this store. True when there was memory for all
    /// of it; else the active project is as it was, or as the edit had recorded it, and the status
    /// line says that `name` failed.
    bool attempt(const QString& name, const std::function<void()>& work);

    // Generative fill

    using FillID = int;
    /// Called once, with a sentence for the user where nothing came of the fill.
    using FillCompletion = std::function<void(const std::optional<QString>& failure)>;
    /// Told how the exchange with the service goes on.
    using FillWatch = std::function<void(const platform::HttpProgress&)>;

    bool canGenerativeFill() const;
    /// What would be sent now; nothing without a selection on the canvas.
    std::optional<GenerativeFillInput> makeGenerativeFillInput(
        const effects::GenerativeFillRequest& request) const;
    /// Has the selected pixels of the selected layer painted anew, as they are now. Returns at
    /// once: the user may have to unlock the key first. `completion` is called from the event loop,
    /// unless the fill is given up. Whatever changes meanwhile, the picture goes to the layer and
    /// the selection that it was asked for, or nowhere.
    FillID performGenerativeFill(const effects::GenerativeFillRequest& request,
                                 FillCompletion completion, FillWatch watch = nullptr);
    /// Gives a fill up, without a call of its completion. Does nothing when it has ended.
    void cancelGenerativeFill(FillID id);

    /// Runs the last command that can be repeated on what is active now.
    void repeatLastAction();

    // View

    void togglePixelGrid();
    void zoomIn();
    void zoomOut();
    /// Whether a fit was made: false without a project or before the viewport's size is known.
    bool performZoomToFitCanvas(StatusUpdate statusUpdate);
    void zoomToFitCanvasWhenReady(QUuid projectID);

    // Files

    /// Writes the active project's file again; asks for one where there is none of a known format.
    void saveActiveProject();
    void saveActiveProjectAs();
    /// Writes the project and attaches it to the destination. Whether it was saved.
    bool saveProject(std::size_t index, const persistence::SaveDestination& destination);
    bool saveProjectForClose(QUuid projectID);
    /// Asks about every unsaved project in turn; whether the program may end.
    bool shouldTerminateAfterHandlingUnsavedProjects();
    /// Opens a package, in the place of the tab that already stands on the same file.
    std::optional<model::PaintProject> openProject(const QUrl& url);
    std::optional<model::PaintProject> openProjectFromPanel();
    /// A project package or an image, by its extension.
    std::optional<model::PaintProject> openFile(const QUrl& url);

    // Images from the clipboard and from drops

    ClipboardImageService& clipboard() { return m_clipboard; }
    /// What the Paste command pastes: an SVG document, else a picture, else the picture of a copied
    /// file.
    std::optional<model::PastedImage> imageOnClipboard();
    /// Pastes an image where the user wants it; asks when it does not fit the canvas or there is
    /// none. The project it went to; nothing when the user cancelled.
    std::optional<model::PaintProject> pasteImage(const model::PastedImage& image);
    /// Makes an image the floating selection, where it was copied or else at the top left, in
    /// place of what floats already. Nothing when the canvas cannot grow so far.
    std::optional<model::PaintProject> pasteImageIntoActiveProject(const model::PastedImage& image,
                                                                   PastedCanvas canvas);
    /// Opens the packages of a drop, and takes the image in it: pastes it in the editor, opens it
    /// as a project elsewhere. The project to show, if any; the status line tells why there is
    /// none.
    std::optional<model::PaintProject> acceptDrop(const DroppedContents& contents,
                                                  DropTarget target);

    // Recents

    void rememberRecent(const QUrl& url);
    void removeRecent(const model::RecentProject& recent);
    void saveRecents();

    // Recovery

    /// Writes the recovery file, complete on disk on return; a failure leaves the former one. The
    /// status line tells of the first failure and of the first success after it, once the command
    /// has returned to the event loop.
    void persistAutosavedSession();
    /// Opens the work that a crash left, where the user wants that.
    void restoreAutosavedSession();
    /// The clean end of a run: stores the settings and removes the recovery file. From then on the
    /// store is not persistent: an event that still comes leaves nothing behind.
    void finishSession();
    /// Keeps all open work aside, to be brought back by `reopenClosedWork`; what this program kept
    /// before is replaced. For the window that closes without asking. False when nothing could be
    /// kept.
    bool setClosedWorkAside();
    bool hasClosedWork() const;
    /// Opens the tabs, histories and fingerprints that were set aside, by this program and by ones
    /// that no longer run, beside those that are open; they are forgotten once the recovery file
    /// holds them. A project that is open already stays as it is.
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
    /// Holds back the writing of the recovery file and writes it once at the end, for a command
    /// that is several steps. Must not be held while the user is asked something.
    class AutosaveScope;
    class Attempt;
    struct AdjustmentPreviews;
    struct GenerativeFills;

    /// The job as it is to be run elsewhere: where it runs out of memory, that is delivered, as an
    /// attempt of `name` that failed.
    platform::LatestWork::Job attempted(const QString& name, platform::LatestWork::Job job);
    std::optional<std::size_t> indexOf(QUuid id) const;
    /// The active project for a command to rewrite, which ends in `finishEdit`; null without one.
    model::PaintProject* projectToEdit();
    /// Rewrites every layer of `rewritten` and puts it in the place of the open project, which is
    /// still `before`. Null, with the project as it was and the status line telling why, when the
    /// work came to nothing or the project has changed meanwhile.
    model::PaintProject* rewriteCanvas(const CanvasRewrite& rewrite,
                                       const model::PaintProject& before,
                                       model::PaintProject rewritten);
    /// Stamps the rewritten project and tells observers; the reference is invalid on return.
    QUuid finishEdit(model::PaintProject& project);
    void appendProject(model::PaintProject project);
    /// Remembers the open project, as it stands, as saved.
    void storeFingerprint(QUuid projectID);
    /// Drops what is kept beside a project that is no longer open.
    void forgetProject(QUuid id);
    void selectTool(model::PaintTool tool);
    void finishAlignObject(model::PaintProject& project, AlignObjectAction action);
    void finishColorRemoval(model::PaintProject& project, const ColorRemovalSettings& settings);
    /// Shows a layer that was tried in place of the selected one.
    void showTry(const model::PaintLayer& layer);
    void showColorRemoval(const ColorRemovalSettings& settings,
                          const std::optional<model::PaintLayer>& result);
    /// Puts a project back as it was, but for a layer that is tried on it; nothing when it is no
    /// longer open.
    void restoreOriginal(const model::PaintProject& original,
                         const model::PaintLayer* tried = nullptr);
    /// The project as it was before a dialog's tries; null where there are none.
    const model::PaintProject* previewOriginal(QUuid id) const;
    void sendFill(FillID id, const std::optional<QString>& key);
    void decodeFill(FillID id, const QByteArray& bytes);
    /// Puts a returned picture where it was asked for; why not, else.
    std::optional<QString> applyFill(FillID id, const raster::RasterImage& returned);
    void endFill(FillID id, const std::optional<QString>& failure);
    Intake imageInFile(const QUrl& file) const;
    Intake drawingInFile(const QString& path) const;
    Intake drawing(const QByteArray& svg) const;
    Intake droppedImage(const DroppedContents& contents) const;
    void removeOldClipboardFiles();
    void restoreSettings();
    bool chooseDestinationAndSave(QUuid projectID, const QString& statusWhenCancelled);
    /// Asks before a picture of several layers is written; whether to go on.
    bool confirmFlattening(const model::PaintProject& project, persistence::SaveFormat format);
    void write(const model::PaintProject& project, const persistence::SaveDestination& destination);
    void attachToFile(QUuid projectID, const QUrl& location);
    /// Puts an opened project into its tab and returns the id it has there.
    QUuid placeOpenedProject(model::PaintProject project);
    void writeAutosavedSession();
    /// Takes down how the last write of the recovery file went; no text means well.
    void noteRecoveryFault(const QString& fault);
    /// Says that recovery is not being kept, or is again, where the status line's last word on it
    /// was another.
    void reportRecoveryFault();
    persistence::PaintAutosaveSession currentSession() const;
    void adoptSession(const persistence::PaintAutosaveSession& session);
    void updateUntitledCountersFromRecoveredProjects();

    StoreEnvironment m_environment;
    Persistence m_persistence;
    ClipboardImageService m_clipboard;
    std::unique_ptr<AdjustmentPreviews> m_previews;
    std::unique_ptr<GenerativeFills> m_fills;
    std::vector<model::PaintProject> m_openProjects;
    std::optional<QUuid> m_activeProjectID;
    model::PaintAppSettings m_settings;
    QString m_statusMessage;
    StatusKind m_statusKind = StatusKind::news;
    std::vector<model::RecentProject> m_recents;
    QSizeF m_canvasViewportSize{0.0, 0.0};
    std::optional<model::CanvasPoint> m_canvasCursorPosition;
    QUuid m_zoomToFitRequestID;
    std::optional<QUuid> m_pendingZoomToFitProjectID;
    std::optional<RepeatablePaintAction> m_lastRepeatableAction;
    persistence::Histories m_histories;
    persistence::Fingerprints m_savedProjectFingerprints;
    int m_untitledCount = 0;
    int m_pastedProjectCount = 0;
    bool m_isRestoringHistory = false;
    persistence::RecoveryFolder m_recoveryFolder;
    QString m_recoveryFault;
    QString m_reportedRecoveryFault;
    /// What the recovery file holds; nothing while that is not known.
    std::optional<persistence::PaintAutosaveSession> m_writtenSession;
    /// The command under way, where it is one that may run out of memory.
    const Attempt* m_attempt = nullptr;
    int m_autosaveHolds = 0;
    bool m_isAutosaveDue = false;
};

} // namespace quillabrae::store
