// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LatestWork.h"
#include "store/AlignObjectAction.h"
#include "store/ColorRemovalSettings.h"
#include "store/ProjectStore.h"

#include <memory>
#include <optional>

namespace quillabrae::store {

/// What the store knows while a dialog shows its effect on the open project: the project as it was,
/// and the choice whose effect it shows now.
struct ProjectStore::AdjustmentPreviews {
    explicit AdjustmentPreviews(const platform::LatestWorkFactory& makeWork)
        : coarseWork(makeWork()), wholeWork(makeWork()) {}

    std::optional<model::PaintProject> alignOriginal;
    std::optional<AlignObjectAction> alignAction;
    std::optional<model::PaintProject> colorRemovalOriginal;
    std::optional<ColorRemovalSettings> colorRemovalSettings;

    /// Counts the settings that were tried, so that a late result is told from the latest.
    int attempts = 0;
    /// First a reduced picture, at once; then, while nothing newer is wanted, the whole.
    std::unique_ptr<platform::LatestWork> coarseWork;
    std::unique_ptr<platform::LatestWork> wholeWork;

    void dropWork() {
        coarseWork->drop();
        wholeWork->drop();
    }
    void finishWork() {
        coarseWork->finish();
        wholeWork->finish();
    }
};

} // namespace quillabrae::store
