// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QWidget>

#include <optional>

class QLabel;
class QVBoxLayout;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class ActionRow;
class CommandActions;
class RecentList;
class WindowCoordinator;

/// The panel that greets: new, open, the tour, and what was open lately. It has no frame: it is
/// moved by its background and closed by its own control. Takes dropped files.
class WelcomePanel final : public QWidget {
    Q_OBJECT

public:
    WelcomePanel(store::ProjectStore& store, WindowCoordinator& windows,
                 const CommandActions& actions);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QWidget* makeCloseButton();
    void build(QVBoxLayout& layout);
    void buildHeader(QVBoxLayout& layout);
    void buildButtons(QVBoxLayout& layout);
    void buildOffers(QVBoxLayout& layout);
    void buildRecents(QVBoxLayout& layout);
    void followStore();
    void refresh();
    void markDropTarget(bool isTargeted);

    store::ProjectStore& m_store;
    WindowCoordinator& m_windows;
    QWidget* m_closeButton;
    ActionRow* m_closedWork = nullptr;
    RecentList* m_recents = nullptr;
    QLabel* m_status = nullptr;
    std::optional<QPoint> m_press;
    bool m_isImageDropTargeted = false;
};

} // namespace quillabrae::shell
