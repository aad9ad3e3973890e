// SPDX-License-Identifier: GPL-3.0-or-later
// Open and save, with their questions to the user.
#include "model/PastedImage.h"
#include "persistence/FileError.h"
#include "persistence/ProjectFileService.h"
#include "persistence/ProjectImageExportService.h"
#include "platform/Clock.h"
#include "store/Attempt.h"
#include "store/AutosaveScope.h"
#include "store/FileLocation.h"
#include "store/Intake.h"
#include "store/ProjectStore.h"
#include "store/UsageReports.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quillabrae::store {

using persistence::FileError;
using persistence::SaveDestination;
using persistence::SaveFormat;
using services::AppAnalyticsEvent;

namespace {

constexpr QLatin1StringView packageExtension("quillabrae");

/// Where the project is saved again without a question.
std::optional<SaveDestination> attachedDestination(const model::PaintProject& project) {
    if (!project.fileURL) return std::nullopt;
    const auto format = persistence::saveFormatOf(*project.fileURL);
    if (!format) return std::nullopt;
    return SaveDestination{*project.fileURL, *format};
}

/// The kind of an image file as usage events tell it: a word of this list, whatever the file is
/// called.
QString countedFormat(const QUrl& imageFile) {
    static const QStringList known{
        QStringLiteral("png"),  QStringLiteral("jpg"),  QStringLiteral("jpeg"),
        QStringLiteral("heic"), QStringLiteral("webp"), QStringLiteral("tif"),
        QStringLiteral("tiff"), QStringLiteral("svg"),  QStringLiteral("bmp"),
        QStringLiteral("gif"),  QStringLiteral("jp2")};
    const QString extension = lowercasedExtension(imageFile);
    return known.contains(extension) ? extension : QStringLiteral("other");
}

} // namespace

void ProjectStore::saveActiveProject() {
    const auto index = activeIndex();
    if (!index) return;
    if (const auto destination = attachedDestination(m_openProjects[*index]))
        saveProject(*index, *destination);
    else
        saveActiveProjectAs();
}

void ProjectStore::saveActiveProjectAs() {
    if (const model::PaintProject* active = activeProject())
        chooseDestinationAndSave(active->id, QString());
}

bool ProjectStore::chooseDestinationAndSave(QUuid projectID, const QString& statusWhenCancelled) {
    const auto destination =
        m_environment.panels.chooseSaveDestination(project(projectID)->displayName());
    if (!destination) {
        if (!statusWhenCancelled.isEmpty()) setStatusMessage(statusWhenCancelled);
        return false;
    }
    const auto index = indexOf(projectID);
    return index && saveProject(*index, *destination);
}

bool ProjectStore::saveProject(std::size_t index, const SaveDestination& destination) {
    if (index >= m_openProjects.size()) return false;
    const model::PaintProject saved = m_openProjects[index];
    const QUrl location = fileLocation(destination.url);
    try {
        if (!confirmFlattening(saved, destination.format)) throw platform::WorkCancelled();
        write(saved, {location, destination.format});
    } catch (const platform::WorkCancelled&) {
        setStatusMessage(tr("Save cancelled"));
        return false;
    } catch (const FileError& error) {
        setStatusMessage(tr("Save failed: %1").arg(error.description()), StatusKind::failure);
        return false;
    }
    if (destination.format == SaveFormat::project) rememberRecent(location);
    attachToFile(saved.id, location);
    setStatusMessage(tr("Saved %1").arg(location.fileName()));
    persistAutosavedSession();
    report(m_environment,
           destination.format == SaveFormat::project ? AppAnalyticsEvent::projectSaved
                                                     : AppAnalyticsEvent::imageExported,
           {{QStringLiteral("format"), persistence::fileExtension(destination.format)}});
    return true;
}

bool ProjectStore::confirmFlattening(const model::PaintProject& project, SaveFormat format) {
    const int layerCount = static_cast<int>(project.layers.size());
    if (format == SaveFormat::project || layerCount < 2) return true;
    return m_environment.panels.confirmFlattenedImageSave(layerCount);
}

void ProjectStore::write(const model::PaintProject& project, const SaveDestination& destination) {
    const QString title = tr("Saving “%1”").arg(destination.url.fileName());
    m_environment.work.run(title, [&](platform::WorkControl& control) {
        platform::FileOperations& operations = platform::systemFileOperations();
        if (destination.format == SaveFormat::project)
            persistence::ProjectFileService::save(project, destination.url, m_environment.clock,
                                                  m_environment.fileIcons, operations, control);
        else
            persistence::ProjectImageExportService::save(project, destination.url,
                                                         destination.format, operations, control);
    });
}

void ProjectStore::attachToFile(QUuid projectID, const QUrl& location) {
    const auto index = indexOf(projectID);
    if (!index) return;
    m_openProjects[*index].fileURL = location;
    m_openProjects[*index].lastModified = m_environment.clock.now();
    storeFingerprint(projectID);
    Q_EMIT projectChanged(projectID);
}

bool ProjectStore::saveProjectForClose(QUuid projectID) {
    const auto index = indexOf(projectID);
    if (!index) return false;
    if (const auto destination = attachedDestination(m_openProjects[*index]))
        return saveProject(*index, *destination);
    return chooseDestinationAndSave(projectID, tr("Save cancelled"));
}

bool ProjectStore::shouldTerminateAfterHandlingUnsavedProjects() {
    const std::vector<model::PaintProject> projects = m_openProjects;
    for (const model::PaintProject& project : projects) {
        if (!isProjectUnsaved(project)) continue;
        setActiveProjectID(project.id);
        switch (m_environment.panels.requestSaveBeforeClosing(project.displayName())) {
            case SaveBeforeCloseChoice::save:
                if (!saveProjectForClose(project.id)) return false;
                break;
            case SaveBeforeCloseChoice::discard:
                break;
            case SaveBeforeCloseChoice::cancel:
                setStatusMessage(tr("Quit cancelled"));
                return false;
        }
    }
    return true;
}

std::optional<model::PaintProject> ProjectStore::openFile(const QUrl& url) {
    return lowercasedExtension(url) == packageExtension ? openProject(url) : createProject(url);
}

std::optional<model::PaintProject> ProjectStore::openProjectFromPanel() {
    const auto url = m_environment.panels.chooseProjectToOpen();
    return url ? openFile(*url) : std::nullopt;
}

std::optional<model::PaintProject> ProjectStore::openProject(const QUrl& url) {
    return Attempt::run(*this, tr("Open"), [&]() -> std::optional<model::PaintProject> {
        const QUrl location = fileLocation(url);
        model::PaintProject project;
        try {
            project = persistence::ProjectFileService::read(location);
        } catch (const FileError& error) {
            setStatusMessage(tr("Open failed: %1").arg(error.description()), StatusKind::failure);
            return std::nullopt;
        }
        project.fileURL = location;
        project.lastModified = m_environment.clock.now();
        const QUuid id = placeOpenedProject(std::move(project));
        rememberRecent(location);
        storeFingerprint(id);
        setStatusMessage(tr("Opened %1").arg(this->project(id)->displayName()));
        recordHistory(id, tr("Open Project"), QStringLiteral("folder"));
        report(m_environment, AppAnalyticsEvent::projectOpened);
        return *this->project(id);
    });
}

QUuid ProjectStore::placeOpenedProject(model::PaintProject project) {
    const auto tab =
        std::ranges::find(m_openProjects, project.fileURL, &model::PaintProject::fileURL);
    const bool replaces = tab != m_openProjects.end();
    // A copy of an open project at another path is a project of its own: two tabs with one id
    // would share their history.
    const bool isTaken = indexOf(project.id) && !(replaces && tab->id == project.id);
    if (isTaken) project.id = QUuid::createUuid();
    const QUuid id = project.id;
    if (!replaces) {
        appendProject(std::move(project));
        return id;
    }
    const QUuid former = tab->id;
    *tab = std::move(project);
    if (former != id) forgetProject(former);
    Q_EMIT openProjectsChanged();
    setActiveProjectID(id);
    Q_EMIT projectChanged(id);
    return id;
}

std::optional<model::PaintProject> ProjectStore::createProject(const QUrl& imageFile) {
    return Attempt::run(*this, tr("Open"), [&]() -> std::optional<model::PaintProject> {
        const QUrl location = fileLocation(imageFile);
        const auto [image, failure] = imageInFile(location);
        if (!image) {
            const bool isCancelled = failure == IntakeFailure::cancelled;
            if (isCancelled)
                setStatusMessage(tr("Open cancelled"));
            else
                setStatusMessage(unreadableImage(), StatusKind::failure);
            return std::nullopt;
        }
        const AutosaveScope autosave(*this);
        const QUuid id = createProject(*image).id;
        const auto index = indexOf(id);
        if (!index) return std::nullopt;
        model::PaintProject& created = m_openProjects[*index];
        const QString name = QFileInfo(location.path()).completeBaseName().trimmed();
        if (!name.isEmpty()) created.title = name;
        created.fileURL = location;
        // Undo leads back to the image as it was opened, name and all, which is its saved state.
        auto& entries = m_histories[id].entries;
        if (!entries.empty()) entries.back().project = created;
        storeFingerprint(id);
        Q_EMIT projectChanged(id);
        persistAutosavedSession();
        setStatusMessage(tr("Opened %1").arg(location.fileName()));
        report(m_environment, AppAnalyticsEvent::projectOpened,
               {{QStringLiteral("kind"), QStringLiteral("image")},
                {QStringLiteral("format"), countedFormat(location)}});
        const model::PaintProject* opened = project(id);
        return opened ? std::optional(*opened) : std::nullopt;
    });
}

} // namespace quillabrae::store
