// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <vector>

namespace quillabrae::model {

/// One step of a project's history: the whole project as it stood after the edit `title` names.
struct PaintHistoryEntry {
    QUuid id;
    QString title;
    QString symbolName;
    PaintProject project;

    friend bool operator==(const PaintHistoryEntry&, const PaintHistoryEntry&) = default;
};

/// A project's history, oldest entry first. `selectedIndex` is the entry that the project stands
/// at, -1 when there is none.
struct PaintHistoryState {
    std::vector<PaintHistoryEntry> entries;
    int selectedIndex = -1;

    bool canUndo() const { return selectedIndex >= 1; }
    bool canRedo() const {
        return selectedIndex >= 0 && selectedIndex < static_cast<int>(entries.size()) - 1;
    }

    friend bool operator==(const PaintHistoryState&, const PaintHistoryState&) = default;
};

} // namespace quillabrae::model
