// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/AppDelegate.h"

#include "shell/app/FirstFrame.h"
#include "shell/app/WindowCoordinator.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QSessionManager>
#include <QWidget>

#include <algorithm>
#include <array>
#include <utility>

namespace quillabrae::shell {
namespace {

using platform::StartRequest;

/// What the desktop file offers beside starting the program.
struct Action {
    QLatin1StringView name;
    void (WindowCoordinator::*run)() = nullptr;
};

constexpr std::array actions{
    Action{QLatin1StringView("new-project"), &WindowCoordinator::createNewProject},
    Action{QLatin1StringView("open-file"), &WindowCoordinator::openProjectFromPanel},
};

} // namespace

AppDelegate::AppDelegate(store::ProjectStore& store, WindowCoordinator& windows, Hooks hooks,
                         QObject* parent)
    : QObject(parent), m_store(store), m_windows(windows), m_hooks(std::move(hooks)) {
    connect(&m_windows, &WindowCoordinator::quitRequested, this, &AppDelegate::terminate);
}

void AppDelegate::finishLaunching(const StartRequest& request) {
    // A start by the bus has its token from the call.
    const platform::ActivationLeave leave(request.activationToken);
    const bool startsInEditor = m_store.hasActiveProject() || !request.files.isEmpty();
    if (startsInEditor)
        m_windows.showEditorWindow(m_store.activeProjectID());
    else
        m_windows.showWelcome();
    QWidget* first = m_windows.window(startsInEditor ? WindowRole::editor : WindowRole::welcome);
    new FirstFrame(first, [this, request] {
        m_hooks.atFirstFrame();
        openFirstFiles(request.files);
        m_hooks.afterFirstFrame();
        followLinks(request.links);
        runAction(request.action);
    });
}

void AppDelegate::openFirstFiles(const QList<QUrl>& files) {
    if (files.isEmpty()) return;
    m_windows.openFiles(files);
    m_windows.closeEmptyEditor();
}

void AppDelegate::answer(const StartRequest& request) {
    const platform::ActivationLeave leave(request.activationToken);
    if (!request.files.isEmpty()) m_windows.openFiles(request.files);
    // The files may all have failed; the program still comes to the user, who reads why. Whoever
    // follows a link shows what is to be seen of it.
    if (request.links.isEmpty()) m_windows.reopen();
    followLinks(request.links);
    runAction(request.action);
}

void AppDelegate::followLinks(const QList<QUrl>& links) {
    if (!m_hooks.followLink) return;
    for (const QUrl& link : links) m_hooks.followLink(link);
}

void AppDelegate::runAction(const QString& name) {
    const auto* action = std::ranges::find(actions, name, &Action::name);
    if (action == actions.end() || QApplication::activeModalWidget() != nullptr) return;
    (m_windows.*action->run)();
}

bool AppDelegate::mayTerminate() {
    if (m_isAsking) return false;
    const QScopedValueRollback asking(m_isAsking, true);
    return m_store.shouldTerminateAfterHandlingUnsavedProjects();
}

void AppDelegate::terminate() {
    if (mayTerminate()) finish();
}

void AppDelegate::finish() {
    if (m_isEnding) return;
    m_isEnding = true;
    if (m_store.isPersistent()) m_store.finishSession();
    m_hooks.quit();
}

void AppDelegate::commitData(QSessionManager& session) {
    m_agreedToEndWith.reset();
    if (!session.allowsInteraction()) return;
    if (!mayTerminate()) {
        // Still within the interaction: ended first, it would tell the session manager to go on,
        // and the refusal would come too late.
        session.cancel();
        return;
    }
    m_agreedToEndWith = m_store.openProjects();
    session.release();
}

bool AppDelegate::mayEndAsAgreed() {
    const auto agreed = std::exchange(m_agreedToEndWith, std::nullopt);
    return agreed && *agreed == m_store.openProjects();
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Quit) return QObject::eventFilter(watched, event);
    if (mayEndAsAgreed())
        finish();
    else
        terminate();
    event->setAccepted(m_isEnding);
    return true;
}

} // namespace quillabrae::shell
