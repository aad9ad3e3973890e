// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/welcome/WelcomeContent.h"

#include <QScrollArea>

class QVBoxLayout;

namespace quillabrae::shell {

class WindowCoordinator;

/// The recent projects, newest first, or a word that there are none.
class RecentList final : public QScrollArea {
    Q_OBJECT

public:
    RecentList(store::ProjectStore& store, WindowCoordinator& windows, QWidget* parent = nullptr);

    void showRecents(const std::vector<WelcomeContent::Recent>& recents);

private:
    QWidget* makeRow(const WelcomeContent::Recent& recent);
    QWidget* makeEmptyRecents();

    store::ProjectStore& m_store;
    WindowCoordinator& m_windows;
};

} // namespace quillabrae::shell
