// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ProjectTabBar.h"

#include "platform/LatestWork.h"
#include "raster/DecodeCache.h"
#include "services/AppUpdateService.h"
#include "shell/app/WindowCoordinator.h"
#include "shell/commands/CommandTable.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/SidewaysScroller.h"
#include "shell/controls/TextSize.h"
#include "shell/editor/ProjectTab.h"
#include "shell/editor/ProjectThumbnail.h"
#include "shell/editor/UpdateButton.h"
#include "shell/looks/Style.h"
#include "store/ProjectStore.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>

namespace quillabrae::shell {
namespace {

constexpr int barHeight = 48;
constexpr int tabHeight = 40;
/// The chosen tab stays clear of the hints that there are more.
constexpr int hintedEdge = 40;
/// Pictures follow a little behind the work, so that a run of edits makes one.
constexpr std::chrono::milliseconds thumbnailDelay{60};

} // namespace

ProjectTabBar::ProjectTabBar(const store::ProjectStore& store, WindowCoordinator& windows,
                             services::AppUpdateService* updates, QWidget* parent)
    : QWidget(parent),
      m_store(store),
      m_windows(windows),
      m_layerPictures(std::make_shared<LayerPictureCache>()),
      m_thumbnailWork(platform::makeThreadedLatestWork()) {
    TextSize::follow(*this, [this] {
        setFixedHeight(TextSize::rowHeight(*this, tabHeight) + barHeight - tabHeight);
    });
    setAccessibleName(tr("Open projects"));
    auto* content = new QWidget;
    m_row = new QHBoxLayout(content);
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(Style::grid / 2);
    m_row->setSizeConstraint(QLayout::SetMinAndMaxSize);
    m_scroller = new SidewaysScroller(content, this);

    const Command& newProject = command(CommandID::newProject);
    auto* create = new IconButton({.symbolName = QStringLiteral("plus"),
                                   .title = title(newProject),
                                   .help = help(newProject),
                                   .extent = 32,
                                   .iconExtent = 16},
                                  this);
    connect(create, &QAbstractButton::clicked, this, [this] { m_windows.createNewProject(); });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Style::grid, 4, Style::grid, 4);
    layout->setSpacing(Style::grid / 2);
    layout->addWidget(m_scroller);
    layout->addWidget(create);
    layout->addStretch();
    if (updates != nullptr && updates->hasSource())
        layout->addWidget(new UpdateButton(*updates, this));
    auto* feedback =
        new IconButton({.symbolName = QStringLiteral("bubble.left.and.bubble.right"),
                        .title = tr("Give Feedback"),
                        .help = tr("Tells the makers what would make the program better."),
                        .extent = 32,
                        .iconExtent = 16},
                       this);
    connect(feedback, &QAbstractButton::clicked, this, [this] { m_windows.showFeedbackDialog(); });
    layout->addWidget(feedback);
    followStore();
    matchProjects();
}

ProjectTabBar::~ProjectTabBar() = default;

void ProjectTabBar::followStore() {
    using store::ProjectStore;
    m_thumbnailTimer.setSingleShot(true);
    m_thumbnailTimer.setInterval(thumbnailDelay);
    connect(&m_thumbnailTimer, &QTimer::timeout, this, &ProjectTabBar::refreshThumbnails);
    connect(&m_store, &ProjectStore::openProjectsChanged, this, &ProjectTabBar::matchProjects);
    connect(&m_store, &ProjectStore::activeProjectChanged, this, &ProjectTabBar::refreshTabs);
    connect(&m_store, &ProjectStore::projectChanged, this, &ProjectTabBar::projectChanged);
    connect(&m_store, &ProjectStore::historyChanged, this, &ProjectTabBar::refreshTabs);
}

void ProjectTabBar::matchProjects() {
    const auto& projects = m_store.openProjects();
    std::vector<ProjectTab*> tabs;
    for (const auto& project : projects) {
        const auto found = std::ranges::find(m_tabs, project.id, &ProjectTab::projectID);
        if (found != m_tabs.end()) {
            tabs.push_back(*found);
            m_tabs.erase(found);
        } else {
            tabs.push_back(makeTab(project.id));
            m_staleThumbnails.push_back(project.id);
        }
    }
    for (ProjectTab* gone : m_tabs) {
        m_row->removeWidget(gone);
        gone->hide();
        gone->deleteLater();
    }
    m_tabs = std::move(tabs);
    for (int index = 0; index < std::ssize(m_tabs); ++index) {
        ProjectTab* tab = m_tabs[static_cast<std::size_t>(index)];
        if (m_row->indexOf(tab) == index) continue;
        m_row->insertWidget(index, tab);
        // At once, so that the row knows its width below.
        tab->show();
    }
    refreshTabs();
    if (!m_staleThumbnails.empty()) m_thumbnailTimer.start();
}

ProjectTab* ProjectTabBar::makeTab(const QUuid& id) {
    auto* tab = new ProjectTab(id, this);
    connect(tab, &QAbstractButton::clicked, this, [this, id] { m_windows.selectProject(id); });
    // Queued, since closing may delete the tab that is still in its event.
    connect(
        tab, &ProjectTab::closeRequested, this, [this, id] { m_windows.closeProject(id); },
        Qt::QueuedConnection);
    return tab;
}

void ProjectTabBar::refreshTabs() {
    for (ProjectTab* tab : m_tabs) {
        const QUuid id = tab->projectID();
        const bool isActive = m_store.activeProjectID() == id;
        tab->setLook({.title = m_store.projectTitle(id),
                      .isActive = isActive,
                      .isUnsaved = m_store.hasUnsavedChanges(id)});
    }
    const auto active = std::ranges::find_if(m_tabs, [this](const ProjectTab* tab) {
        return m_store.activeProjectID() == tab->projectID();
    });
    m_row->activate();
    m_scroller->updateGeometry();
    if (active != m_tabs.end()) m_scroller->bringIntoSight(**active, {hintedEdge, 0});
}

void ProjectTabBar::projectChanged(const QUuid& id) {
    if (!std::ranges::count(m_staleThumbnails, id)) m_staleThumbnails.push_back(id);
    m_thumbnailTimer.start();
    refreshTabs();
}

/// A picture and the project that it shows, as it was.
struct ProjectTabBar::Thumbnail {
    model::PaintProject project;
    QSize room;
    QImage picture;
};

void ProjectTabBar::refreshThumbnails() {
    std::vector<Thumbnail> thumbnails;
    for (const ProjectTab* tab : m_tabs) {
        const QUuid id = tab->projectID();
        if (!std::ranges::count(m_staleThumbnails, id)) continue;
        if (const model::PaintProject* project = m_store.project(id))
            thumbnails.push_back({*project, tab->thumbnailRoom(), {}});
    }
    m_thumbnailWork->run(
        [this, known = m_layerPictures, thumbnails = std::move(thumbnails)]() mutable {
            // A look at all layers must not push out those that are worked on.
            const raster::DecodeCacheReadOnly readOnly;
            known->forgetDead();
            for (Thumbnail& thumbnail : thumbnails)
                thumbnail.picture = projectThumbnail(thumbnail.project, thumbnail.room, *known);
            return [this, thumbnails = std::move(thumbnails)] { takeThumbnails(thumbnails); };
        });
}

void ProjectTabBar::takeThumbnails(const std::vector<Thumbnail>& thumbnails) {
    for (const Thumbnail& thumbnail : thumbnails) {
        const QUuid id = thumbnail.project.id;
        const auto tab = std::ranges::find(m_tabs, id, &ProjectTab::projectID);
        if (tab == m_tabs.end()) continue;
        (*tab)->setThumbnail(thumbnail.picture);
        const model::PaintProject* project = m_store.project(id);
        if (project != nullptr && *project == thumbnail.project) std::erase(m_staleThumbnails, id);
    }
}

void ProjectTabBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), Style::line(palette()));
}

void ProjectTabBar::wheelEvent(QWheelEvent* event) {
    m_scroller->turn(*event);
    event->accept();
}

} // namespace quillabrae::shell
