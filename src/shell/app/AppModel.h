// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AppPaths.h"

#include <QList>
#include <QUrl>

#include <memory>

class QApplication;

namespace quillabrae::platform {
class ProgramInstance;
}

namespace quillabrae::shell {

class AppDelegate;
struct Deployment;

/// The whole program's objects, built in one place. Built after QApplication and gone before it.
class AppModel final {
public:
    AppModel(QApplication& application, const platform::AppPaths& paths,
             const Deployment& deployment);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    /// Shows the first window and opens `files`; later starts of the program reach it through
    /// `instance`.
    void launch(platform::ProgramInstance& instance, const QList<QUrl>& files);

private:
    struct Graph;

    std::unique_ptr<Graph> m_graph;
};

} // namespace quillabrae::shell
