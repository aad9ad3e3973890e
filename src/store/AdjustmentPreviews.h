// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LatestWork.h"
#include "store/AlignObjectAction.h"
#include "store/ColorRemovalSettings.h"
#include "store/ProjectStore.h"
#include "store/RepeatablePaintAction.h"

#include <memory>
#include <optional>

namespace quillabrae::store {

/// What the store knows while dialogs show their effect on the open project.
struct ProjectStore::AdjustmentPreviews {
    /// One dialog's tries: the project as it was, and the choice whose effect is shown now.
    template <typename Choice>
    struct Preview {
        std::optional<model::PaintProject> original;
        std::optional<Choice> choice;
    };

    explicit AdjustmentPreviews(const platform::LatestWorkFactory& makeWork)
        : coarseWork(makeWork()), wholeWork(makeWork()) {}

    Preview<AlignObjectAction> align;
    Preview<ColorRemovalSettings> colorRemoval;

    /// Counts the settings that were tried, so that a late result is told from the latest.
    int attempts = 0;
    /// First a reduced picture, at once; then, while nothing newer is wanted, the whole.
    std::unique_ptr<platform::LatestWork> coarseWork;
    std::unique_ptr<platform::LatestWork> wholeWork;

    /// A command that completes while a dialog tries its effect is not for the dialog to take back:
    /// its tries start from there.
    void startFrom(const model::PaintProject& completed) {
        for (auto* original : {&align.original, &colorRemoval.original}) {
            if (*original && (*original)->id == completed.id)
                *original = model::PaintProject(completed);
        }
    }

    void dropWork() {
        coarseWork->drop();
        wholeWork->drop();
    }
    void finishWork() {
        coarseWork->finish();
        wholeWork->finish();
    }

    template <typename Choice>
    static void begin(const ProjectStore& store, Preview<Choice>& preview) {
        if (const model::PaintProject* active = store.activeProject())
            preview = {*active, std::nullopt};
    }

    template <typename Choice>
    static void cancel(ProjectStore& store, Preview<Choice>& preview, const QString& status) {
        if (preview.original) store.restoreOriginal(*preview.original);
        preview = {};
        store.setStatusMessage(status);
    }

    /// Keeps what is shown and ends it with `finish(project, choice)`; without anything to keep it
    /// cancels.
    template <typename Choice, typename Finish>
    static void commit(ProjectStore& store, Preview<Choice>& preview, const QString& statusWithout,
                       Finish finish) {
        const auto choice = preview.choice;
        model::PaintProject* project = store.projectToEdit();
        if (!choice || !project) return cancel(store, preview, statusWithout);
        preview = {};
        finish(*project, *choice);
    }

    /// The active project's selected layer for an adjustment; null without one, and when it is
    /// locked, which the status line tells.
    static model::PaintLayer* layerToAdjust(ProjectStore& store);
    /// Tells observers of an adjustment that is not recorded.
    static void show(ProjectStore& store, const model::PaintProject& project, AdjustmentRun run,
                     const QString& previewStatus);
    /// Ends an adjustment that is recorded.
    struct Report {
        RepeatablePaintAction action;
        QString status;
        QString historyTitle;
        QString symbolName;
    };
    static void finish(ProjectStore& store, model::PaintProject& project, const Report& report);
};

} // namespace quillabrae::store
