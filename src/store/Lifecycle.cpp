// SPDX-License-Identifier: GPL-3.0-or-later
// Projects come and go: making them, closing them, and whether one is unsaved.
#include "model/PastedImage.h"
#include "persistence/FileError.h"
#include "platform/Clock.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/Attempt.h"
#include "store/AutosaveScope.h"
#include "store/ProjectStore.h"
#include "store/UsageReports.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::store {
namespace {

QString newProjectTitle() {
    return ProjectStore::tr("New Project");
}

double wholeAtLeastOne(double value) {
    return std::max(1.0, std::round(value));
}

/// When nobody holds a picture of what was closed any more.
void returnMemoryLater(ProjectStore& store) {
    QMetaObject::invokeMethod(&store, &raster::returnUnusedMemory, Qt::QueuedConnection);
}

} // namespace

void ProjectStore::appendProject(model::PaintProject project) {
    const QUuid id = project.id;
    m_openProjects.push_back(std::move(project));
    Q_EMIT openProjectsChanged();
    setActiveProjectID(id);
}

model::PaintProject ProjectStore::createUntitledProject(double width, double height,
                                                        double resolutionDPI) {
    return Attempt::run(*this, tr("New project"), [&]() -> model::PaintProject {
        ++m_untitledCount;
        model::PaintLayer layer;
        layer.id = QUuid::createUuid();
        layer.name = tr("Background");

        model::PaintProject project;
        project.id = QUuid::createUuid();
        project.title =
            m_untitledCount == 1 ? tr("Untitled") : tr("Untitled %1").arg(m_untitledCount);
        project.canvasWidth = wholeAtLeastOne(width);
        project.canvasHeight = wholeAtLeastOne(height);
        project.resolutionDPI = wholeAtLeastOne(resolutionDPI);
        project.selectedLayerID = layer.id;
        layer.bitmapPNGData = raster::LayerRasterService::solidColorPNGData(
            project.canvasWidth, project.canvasHeight, model::ColorValue{1.0, 1.0, 1.0, 1.0});
        project.layers = {std::move(layer)};
        project.lastModified = m_environment.clock.now();

        const model::PaintProject created = project;
        appendProject(std::move(project));
        zoomToFitCanvasWhenReady(created.id);
        setStatusMessage(tr("Created %1").arg(created.title));
        recordHistory(created.id, newProjectTitle(), QStringLiteral("plus.square"));
        report(m_environment, services::AppAnalyticsEvent::projectCreated);
        return created;
    });
}

model::PaintProject ProjectStore::createProject(const model::PastedImage& image,
                                                const std::optional<QString>& analyticsSource) {
    return Attempt::run(*this, tr("Paste"), [&]() -> model::PaintProject {
        ++m_pastedProjectCount;
        model::PaintProject project =
            model::PaintProject::fromPastedImage(image, m_pastedProjectCount);
        project.lastModified = m_environment.clock.now();
        const model::PaintProject created = project;
        appendProject(std::move(project));
        selectTool(model::PaintTool::moveSelectedPixels);
        setStatusMessage(tr("Created %1 from clipboard").arg(created.displayName()));
        recordHistory(created.id, tr("Paste"), QStringLiteral("doc.on.clipboard"));
        if (analyticsSource)
            report(m_environment, services::AppAnalyticsEvent::projectCreated,
                   {{QStringLiteral("source"), *analyticsSource}});
        return created;
    });
}

void ProjectStore::closeProject(QUuid id) {
    const auto index = indexOf(id);
    if (!index) return;
    m_openProjects.erase(m_openProjects.begin() + static_cast<std::ptrdiff_t>(*index));
    std::optional<QUuid> active = m_activeProjectID;
    if (m_openProjects.empty())
        active.reset();
    else if (active == id)
        active = m_openProjects[std::min(*index, m_openProjects.size() - 1)].id;
    forgetProject(id);
    Q_EMIT openProjectsChanged();
    setActiveProjectID(active);
    persistAutosavedSession();
    if (m_autosaveHolds == 0) returnMemoryLater(*this);
}

void ProjectStore::closeAllProjects() {
    const AutosaveScope autosave(*this);
    const std::vector<model::PaintProject> projects = m_openProjects;
    for (const model::PaintProject& project : projects) closeProject(project.id);
    returnMemoryLater(*this);
}

void ProjectStore::forgetProject(QUuid id) {
    m_histories.remove(id);
    m_savedProjectFingerprints.remove(id);
}

bool ProjectStore::closeProjectRequestingSave(QUuid id) {
    const model::PaintProject* found = project(id);
    if (!found) return false;
    if (!isBlankUntouchedProject(*found) && isProjectUnsaved(*found)) {
        switch (m_environment.panels.requestSaveBeforeClosing(found->displayName())) {
            case SaveBeforeCloseChoice::save:
                if (!saveProjectForClose(id)) return false;
                break;
            case SaveBeforeCloseChoice::discard:
                break;
            case SaveBeforeCloseChoice::cancel:
                setStatusMessage(tr("Close cancelled"));
                return false;
        }
    }
    closeProject(id);
    return true;
}

bool ProjectStore::closeActiveProjectRequestingSave() {
    const model::PaintProject* active = activeProject();
    return active && closeProjectRequestingSave(active->id);
}

bool ProjectStore::hasUnsavedChanges(QUuid projectID) const {
    const model::PaintProject* found = project(projectID);
    return found && !isBlankUntouchedProject(*found) && isProjectUnsaved(*found);
}

bool ProjectStore::isBlankUntouchedProject(const model::PaintProject& project) const {
    if (project.fileURL) return false;
    const auto& entries = history(project.id).entries;
    return entries.size() == 1 && entries.front().title == newProjectTitle();
}

bool ProjectStore::isProjectUnsaved(const model::PaintProject& project) const {
    if (!project.fileURL) return true;
    const auto present = model::ProjectFingerprint::of(project);
    if (!present) return true;
    const auto saved = m_savedProjectFingerprints.constFind(project.id);
    return saved == m_savedProjectFingerprints.constEnd() || *saved != *present;
}

void ProjectStore::storeFingerprint(QUuid projectID) {
    const model::PaintProject* found = project(projectID);
    if (!found) return;
    if (const auto fingerprint = model::ProjectFingerprint::of(*found))
        m_savedProjectFingerprints.insert(projectID, *fingerprint);
}

QString ProjectStore::projectTitle(QUuid id) const {
    const model::PaintProject* found = project(id);
    return found ? found->displayName() : QStringLiteral("Quillabrae");
}

} // namespace quillabrae::store
