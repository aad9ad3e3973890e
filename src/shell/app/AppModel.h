// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AppPaths.h"

#include <memory>

class QApplication;

namespace quillabrae::platform {
class ApplicationService;
class ProgramInstance;
struct StartRequest;
} // namespace quillabrae::platform

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

    /// Shows the first window and does what is asked; later starts of the program reach it through
    /// `instance` and `service`.
    void launch(platform::ProgramInstance& instance, platform::ApplicationService& service,
                const platform::StartRequest& request);

private:
    struct Graph;

    std::unique_ptr<Graph> m_graph;
};

} // namespace quillabrae::shell
