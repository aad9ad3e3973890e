// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreEnvironment.h"

namespace quillabrae::bench {

/// A user who is never there: every question is cancelled.
class NoPanels final : public store::ProjectPanels {
public:
    std::optional<QUrl> chooseProjectToOpen() override { return std::nullopt; }
    std::optional<QUrl> chooseImageToImport() override { return std::nullopt; }
    std::optional<persistence::SaveDestination> chooseSaveDestination(const QString&) override {
        return std::nullopt;
    }
    bool confirmFlattenedImageSave(int) override { return false; }
    store::SaveBeforeCloseChoice requestSaveBeforeClosing(const QString&) override {
        return store::SaveBeforeCloseChoice::cancel;
    }
    store::PasteImageChoice choosePasteAction(QSizeF, store::PasteTarget) override {
        return store::PasteImageChoice::cancel;
    }
};

} // namespace quillabrae::bench
