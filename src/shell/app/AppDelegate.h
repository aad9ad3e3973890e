// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "platform/StartRequest.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

class QSessionManager;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class WindowCoordinator;

/// What the program does when the desktop starts it, hands it files, comes back to it and ends it.
class AppDelegate final : public QObject {
    Q_OBJECT

public:
    struct Hooks {
        /// The first window has painted; its files come next.
        std::function<void()> atFirstFrame = [] {};
        /// Work of the launch that no window waits for; run after the first frame.
        std::function<void()> afterFirstFrame;
        /// Ends the event loop.
        std::function<void()> quit;
        /// Follows a link to the program; may be absent.
        std::function<void(const QUrl&)> followLink{};
    };

    AppDelegate(store::ProjectStore& store, WindowCoordinator& windows, Hooks hooks,
                QObject* parent = nullptr);

    /// Shows the first window: the editor for recovered work or for files to open, else the welcome
    /// window. What else was asked for is done once that window has painted.
    void finishLaunching(const platform::StartRequest& request);
    /// Does what the program is asked for while it runs, and brings it to the user.
    void answer(const platform::StartRequest& request);
    /// Asks about unsaved changes; when nothing stands against it, ends the session and the
    /// program.
    void terminate();
    /// The desktop's log-out: the same questions, and a refusal stops the log-out where it can. The
    /// program lives on until the desktop asks it to quit, since another one may refuse as well.
    void commitData(QSessionManager& session);

protected:
    /// Takes the desktop's request to quit, which would otherwise close the windows one by one.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void openFirstFiles(const QList<QUrl>& files);
    void followLinks(const QList<QUrl>& links);
    /// Runs an action of the desktop file; not while a dialog waits for its answer.
    void runAction(const QString& name);
    /// Whether the program may end; asks at most one set of questions at a time.
    bool mayTerminate();
    /// Whether the log-out's questions were answered and the projects are still as they were then.
    bool mayEndAsAgreed();
    void finish();

    store::ProjectStore& m_store;
    WindowCoordinator& m_windows;
    Hooks m_hooks;
    std::optional<std::vector<model::PaintProject>> m_agreedToEndWith;
    bool m_isAsking = false;
    bool m_isEnding = false;
};

} // namespace quillabrae::shell
