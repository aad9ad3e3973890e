// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/SaveFormat.h"
#include "platform/AppPaths.h"
#include "platform/WorkRunner.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace quillabrae::platform {
class Clock;
class FileIcons;
class Preferences;
} // namespace quillabrae::platform

namespace quillabrae::store {

enum class SaveBeforeCloseChoice { save, discard, cancel };

/// The panels and alerts of opening and saving. Each call blocks until the user has answered.
class ProjectPanels {
public:
    virtual ~ProjectPanels() = default;

    virtual std::optional<QUrl> chooseProjectToOpen() = 0;
    virtual std::optional<QUrl> chooseImageToImport() = 0;
    /// The url carries the format's extension, and an existing file there was agreed to be
    /// replaced.
    virtual std::optional<persistence::SaveDestination> chooseSaveDestination(
        const QString& suggestedName) = 0;
    virtual bool confirmFlattenedImageSave(int layerCount) = 0;
    virtual SaveBeforeCloseChoice requestSaveBeforeClosing(const QString& projectTitle) = 0;
};

/// Everything that the store needs of the world. The referenced objects outlive the store.
struct StoreEnvironment {
    ProjectPanels& panels;
    platform::Preferences& preferences;
    const platform::Clock& clock;
    platform::FileIcons& fileIcons;
    platform::AppPaths paths;
    platform::WorkRunner& work = platform::directWorkRunner();
};

} // namespace quillabrae::store
