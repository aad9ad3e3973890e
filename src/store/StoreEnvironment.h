// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"
#include "persistence/SaveFormat.h"
#include "platform/AppPaths.h"
#include "platform/FileLock.h"
#include "platform/LatestWork.h"
#include "platform/WorkRunner.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace quillabrae::platform {
class Clock;
class FileIcons;
class Pasteboard;
class Preferences;
} // namespace quillabrae::platform

namespace quillabrae::services {
class UsageEvents;
} // namespace quillabrae::services

namespace quillabrae::effects {
class OpenAIImageEditService;
class OpenAIKeychainService;
} // namespace quillabrae::effects

namespace quillabrae::store {

enum class SaveBeforeCloseChoice { save, discard, cancel };

/// What becomes of a picture that comes in.
enum class PasteImageChoice { openAsNewProject, expandCanvas, keepCanvasSize, cancel };
/// Where such a picture could go when that has to be asked.
enum class PasteTarget { noProject, smallerCanvas };

/// Makes a picture of an SVG document, at a size that the user is asked for. Nothing when the
/// document cannot be drawn or the user cancels. Throws persistence::SVGSizeRefused.
using SVGImport = std::function<std::optional<model::PastedImage>(const QByteArray& svgData)>;

/// The panels and alerts of opening, saving and pasting. Each call blocks until the user has
/// answered.
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
    /// Asks what becomes of a picture of `imageSize` pixels.
    virtual PasteImageChoice choosePasteAction(QSizeF imageSize, PasteTarget target) = 0;
};

/// What paints into selections, and the user's key for it.
struct GenerativeFillServices {
    effects::OpenAIKeychainService& keychain;
    effects::OpenAIImageEditService& imageEdit;
};

/// Everything that the store needs of the world. The referenced objects outlive the store.
struct StoreEnvironment {
    ProjectPanels& panels;
    platform::Preferences& preferences;
    const platform::Clock& clock;
    platform::FileIcons& fileIcons;
    platform::Pasteboard& pasteboard;
    platform::AppPaths paths;
    platform::WorkRunner& work = platform::directWorkRunner();
    SVGImport svgImport{};
    /// Where the tries of live previews are made.
    platform::LatestWorkFactory makeLatestWork = platform::makeDirectLatestWork;
    /// Tells programs that share an autosave folder apart.
    platform::LockTaker takeLock = platform::takeFileLock;
    /// Without these there is no key.
    std::optional<GenerativeFillServices> generativeFill{};
    /// Who counts what users do; nobody without it.
    services::UsageEvents* usageEvents = nullptr;
};

} // namespace quillabrae::store
