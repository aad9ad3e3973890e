// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SequenceInvariants.h"

#include "canvas/CanvasView.h"
#include "persistence/AppPersistenceService.h"
#include "persistence/ProjectFileService.h"
#include "platform/Clock.h"
#include "raster/DecodeCache.h"
#include "replay/SequenceFloating.h"
#include "replay/Session.h"

#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace quillabrae::replay {

using model::PaintHistoryState;
using model::PaintLayer;
using model::PaintProject;

namespace {

bool isWhole(double value) {
    return std::trunc(value) == value;
}

/// Everything but where the file is and when it was touched.
bool isSameWork(PaintProject a, const PaintProject& b) {
    a.fileURL = b.fileURL;
    a.lastModified = b.lastModified;
    return a == b;
}

/// As files keep it: they count time in whole seconds.
PaintProject asFiled(PaintProject project) {
    constexpr qint64 millisecondsPerSecond = 1000;
    const qint64 instant = project.lastModified.toMSecsSinceEpoch();
    project.lastModified =
        QDateTime::fromMSecsSinceEpoch(instant - instant % millisecondsPerSecond, Qt::UTC);
    return project;
}

std::vector<PaintProject> asFiled(std::vector<PaintProject> projects) {
    for (PaintProject& project : projects) project = asFiled(project);
    return projects;
}

PaintHistoryState asFiled(PaintHistoryState history) {
    for (model::PaintHistoryEntry& entry : history.entries) entry.project = asFiled(entry.project);
    return history;
}

// What holds at every moment

void tabIsActive(const Step& step, QStringList& broken) {
    const Moment& now = step.after;
    if (now.activeProjectID.has_value() == now.projects.empty() ||
        (now.activeProjectID && now.activeProject() == nullptr))
        broken << QStringLiteral("active: the active project is not among the open ones");
}

void layersAreSound(const Step& step, QStringList& broken) {
    for (const PaintProject& project : step.after.projects) {
        QSet<QUuid> ids;
        for (const PaintLayer& layer : project.layers) {
            ids.insert(layer.id);
            if (!layer.bitmapPNGData) continue;
            const raster::RasterImage pixels = raster::decodedImage(*layer.bitmapPNGData);
            if (pixels.width() != project.canvasWidth || pixels.height() != project.canvasHeight)
                broken << QStringLiteral("pixels: a layer of %1 by %2 on a canvas of %3 by %4")
                              .arg(pixels.width())
                              .arg(pixels.height())
                              .arg(project.canvasWidth)
                              .arg(project.canvasHeight);
        }
        if (ids.isEmpty() || static_cast<std::size_t>(ids.size()) != project.layers.size())
            broken << QStringLiteral("layers: none, or two with one id");
        if (!ids.contains(project.selectedLayerID))
            broken << QStringLiteral("selected: the selected layer does not exist");
        if (!(project.canvasWidth >= 1.0) || !(project.canvasHeight >= 1.0))
            broken << QStringLiteral("canvas: smaller than a pixel");
    }
}

bool hasUnflaggedSelection(const PaintProject& project) {
    return project.pixelSelection && !project.isCanvasSelected;
}

/// A fill keeps the selection and takes its flag away; a project may be opened as one left it, also
/// in the place of a tab that has gone back to before the fill.
bool comesFromAFill(const PaintHistoryState& history) {
    return std::ranges::any_of(history.entries, [&](const model::PaintHistoryEntry& entry) {
        const bool isOpening =
            &entry == &history.entries.front() || entry.title == QLatin1StringView("Open Project");
        return entry.title == QLatin1StringView("Generative Fill") ||
               (isOpening && hasUnflaggedSelection(entry.project));
    });
}

void selectionIsSound(const Step& step, QStringList& broken) {
    for (const PaintProject& project : step.after.projects) {
        const auto& selection = project.pixelSelection;
        if (project.isCanvasSelected && !selection)
            broken << QStringLiteral("flags: a flag without a selection");
        if (hasUnflaggedSelection(project) &&
            !comesFromAFill(step.after.histories.value(project.id)))
            broken << QStringLiteral("flags: a selection without its flag");
        if (isCommittable(project) && !selection)
            broken << QStringLiteral("placed: floating pixels without a place");
        if (!selection) continue;
        if (!isWhole(selection->x) || !isWhole(selection->y) || !isWhole(selection->width) ||
            !isWhole(selection->height) || selection->width < 1.0 || selection->height < 1.0)
            broken << QStringLiteral("outline: %1, %2, %3 by %4 is not on whole pixels")
                          .arg(selection->x)
                          .arg(selection->y)
                          .arg(selection->width)
                          .arg(selection->height);
        if (selection->maskPNGData && raster::decodedImage(*selection->maskPNGData).isNull())
            broken << QStringLiteral("mask: does not decode");
    }
}

void historyIsSound(const Step& step, QStringList& broken) {
    for (const PaintProject& project : step.after.projects) {
        const PaintHistoryState history = step.after.histories.value(project.id);
        if (history.selectedIndex < 0 ||
            history.selectedIndex >= static_cast<int>(history.entries.size()))
            broken << QStringLiteral("index: the history stands at %1 of %2")
                          .arg(history.selectedIndex)
                          .arg(history.entries.size());
    }
}

void nothingRunsWithoutAButton(const Step& step, QStringList& broken) {
    const CanvasStage& stage = step.session.canvas();
    const canvas::CanvasView& view = step.session.canvas().view();
    if (stage.isDragging() || view.isRightMouseDrawing() || view.keyboardPointer().isPressed())
        return;
    if (view.drawing().isRunning() && !view.shapeDraft().activeShapeDraft())
        broken << QStringLiteral("running: a drawing with no button down");
    if (view.selection().pixels().isRunning())
        broken << QStringLiteral("running: a move of pixels with no button down");
}

// What a step may change

void otherTabsStay(const Step& step, QStringList& broken) {
    if (step.isAboutTabs()) return;
    for (const PaintProject& then : step.before.projects) {
        if (then.id == step.before.activeProjectID || then.id == step.after.activeProjectID)
            continue;
        const PaintProject* now = step.after.project(then.id);
        if (now == nullptr || *now != then)
            broken << QStringLiteral("tabs: a project that is not active has changed");
    }
}

void historyOnlyGrows(const Step& step, QStringList& broken) {
    for (const PaintProject& project : step.after.projects) {
        if (step.before.project(project.id) == nullptr) continue;
        const PaintHistoryState then = step.before.histories.value(project.id);
        const PaintHistoryState now = step.after.histories.value(project.id);
        if (now.entries == then.entries) continue;
        const std::ptrdiff_t kept = then.selectedIndex + 1;
        if (std::ssize(now.entries) < kept ||
            !std::equal(then.entries.begin(), then.entries.begin() + kept, now.entries.begin()))
            broken << QStringLiteral("entries: one that could be undone is not what it was");
        if (step.endsInItsEntry(project.id) && now.entries.back().project != project)
            broken << QStringLiteral("recorded: the last entry is not the project as it stands");
    }
}

void undoGivesTheEntryBack(const Step& step, QStringList& broken) {
    if (!step.isOneOf({"store.undo", "store.redo", "store.restoreHistory"})) return;
    const PaintProject* now = step.after.activeProject();
    if (now == nullptr || step.before.project(now->id) == nullptr) return;
    const PaintHistoryState then = step.before.histories.value(now->id);
    const PaintHistoryState history = step.after.histories.value(now->id);
    if (history.entries != then.entries) broken << QStringLiteral("undo: entries have changed");
    if (history.selectedIndex == then.selectedIndex) return;
    PaintProject expected =
        history.entries[static_cast<std::size_t>(history.selectedIndex)].project;
    expected.fileURL = step.before.project(now->id)->fileURL;
    if (*now != expected) broken << QStringLiteral("undo: the project is not its entry");
}

/// Commands that work on locked layers, and lines that bring a whole project.
bool mayTouchLocked(const Step& step) {
    return step.isAboutTabs() ||
           step.isOneOf({"store.undo", "store.redo", "store.resizeActiveImage",
                         "store.resizeActiveCanvas", "store.trimTransparentWhitespace",
                         "store.flattenLayerDown", "store.repeatLastAction", "paste", "drop",
                         "store.cancelAlignObjectPreview", "store.cancelColorRemovalPreview",
                         "store.commitAlignObjectPreview", "store.commitColorRemovalPreview",
                         "store.previewAlignObject", "store.previewColorRemoval"});
}

void lockedPixelsStay(const Step& step, QStringList& broken) {
    if (mayTouchLocked(step)) return;
    for (const PaintProject& then : step.before.projects) {
        const PaintProject* now = step.after.project(then.id);
        if (now == nullptr) continue;
        // Floating pixels come down on a locked layer too.
        const bool putDown = then.floatingSelection && !now->floatingSelection;
        for (const PaintLayer& layer : then.layers) {
            const PaintLayer* present = layerOf(*now, layer.id);
            if (present == nullptr || !layer.isLocked || !present->isLocked) continue;
            if (putDown && then.floatingSelection->layerID == layer.id) continue;
            if (present->bitmapPNGData != layer.bitmapPNGData)
                broken << QStringLiteral("locked: a locked layer's pixels have changed");
        }
    }
}

// Files

void aSaveAndAnOpeningChangeNothing(const Step& step, QStringList& broken) {
    if (!step.isOneOf({"store.addLayer", "paste", "store.selectAllCanvas", "store.flattenLayerDown",
                       "store.cutSelectedCanvasPixels"}))
        return;
    const QTemporaryDir folder;
    platform::NoFileIcons icons;
    const platform::SystemClock clock;
    for (const PaintProject& project : step.after.projects) {
        const QUrl url = QUrl::fromLocalFile(folder.filePath(project.id.toString()));
        persistence::ProjectFileService::save(project, url, clock, icons);
        if (!isSameWork(persistence::ProjectFileService::read(url), project))
            broken << QStringLiteral("package: what was saved is not what is read");
    }
}

/// The recovery file is whole when a command returns.
void theRecoveryFileHasIt(const Step& step, QStringList& broken) {
    const PaintProject* active = step.after.activeProject();
    if (active == nullptr || !step.endsInItsEntry(active->id)) return;
    const auto session = persistence::AppPersistenceService::loadAutosavedSession(
        step.session.autosaveFolder() + QStringLiteral("/Recovery.quillabraesession"));
    if (!session) {
        broken << QStringLiteral("recovery: there is no file that can be read");
    } else if (session->projects != asFiled(step.after.projects) ||
               session->activeProjectID != step.after.activeProjectID) {
        broken << QStringLiteral("recovery: the file is not the work");
    }
}

} // namespace

QStringList brokenRules(const Step& step) {
    QStringList broken;
    for (const auto rule :
         {tabIsActive, layersAreSound, selectionIsSound, historyIsSound, nothingRunsWithoutAButton,
          otherTabsStay, historyOnlyGrows, undoGivesTheEntryBack, lockedPixelsStay,
          floatingPixelsStayOrComeDown, aSaveAndAnOpeningChangeNothing, theRecoveryFileHasIt})
        rule(step, broken);
    return broken;
}

QStringList brokenByRestart(const Moment& before, const Moment& after) {
    QStringList broken;
    if (after.projects != asFiled(before.projects))
        broken << QStringLiteral("restart: projects are not what they were");
    if (after.activeProjectID != before.activeProjectID)
        broken << QStringLiteral("restart: another project is active");
    for (const PaintProject& project : after.projects) {
        // A history of a single entry is not worth keeping.
        if (before.histories.value(project.id).entries.size() < 2) continue;
        const auto kept = persistence::normalizedRecoveredHistory(
            project, persistence::trimmedForRecovery(
                         before.histories.value(project.id),
                         static_cast<int>(after.histories.value(project.id).entries.size())));
        if (after.histories.value(project.id) != asFiled(kept))
            broken << QStringLiteral("restart: a history is not what it was");
    }
    return broken;
}

} // namespace quillabrae::replay
