// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>
#include <QUuid>
#include <QWidget>

#include <memory>
#include <vector>

class QHBoxLayout;

namespace quillabrae::platform {
class LatestWork;
}

namespace quillabrae::services {
class AppUpdateService;
}

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class LayerPictureCache;
class ProjectTab;
class SidewaysScroller;
class WindowCoordinator;

/// The open projects as a row of tabs that scrolls sideways, and a button for a new one. At the end
/// stands the button for updates, in builds that have somewhere to look for them.
class ProjectTabBar final : public QWidget {
    Q_OBJECT

public:
    ProjectTabBar(const store::ProjectStore& store, WindowCoordinator& windows,
                  services::AppUpdateService* updates = nullptr, QWidget* parent = nullptr);
    ~ProjectTabBar() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void followStore();
    void matchProjects();
    ProjectTab* makeTab(const QUuid& id);
    void refreshTabs();
    void refreshThumbnails();
    struct Thumbnail;
    void takeThumbnails(const std::vector<Thumbnail>& thumbnails);
    void projectChanged(const QUuid& id);

    const store::ProjectStore& m_store;
    WindowCoordinator& m_windows;
    SidewaysScroller* m_scroller;
    QHBoxLayout* m_row;
    std::vector<ProjectTab*> m_tabs;
    /// Tabs whose picture is behind their project.
    std::vector<QUuid> m_staleThumbnails;
    QTimer m_thumbnailTimer;
    /// Of the jobs, one after the other.
    std::shared_ptr<LayerPictureCache> m_layerPictures;
    std::unique_ptr<platform::LatestWork> m_thumbnailWork;
};

} // namespace quillabrae::shell
