// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/DesktopWindows.h"

#include "shell/app/WindowCoordinator.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/Alert.h"
#include "shell/editor/EditorWindow.h"
#include "shell/looks/SystemMotion.h"
#include "shell/plugins/PluginLibraryView.h"
#include "shell/quickstart/PaintNetQuickStartView.h"
#include "shell/settings/PaintSettingsView.h"
#include "shell/welcome/WelcomePanel.h"
#include "store/ProjectStore.h"

#include <QGuiApplication>
#include <QScreen>

namespace quillabrae::shell {
namespace {

Qt::WindowFlags windowFlags(WindowTraits::Frame frame) {
    switch (frame) {
        case WindowTraits::Frame::none:
            return Qt::Window | Qt::FramelessWindowHint;
        case WindowTraits::Frame::fixed:
            return Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                   Qt::WindowCloseButtonHint;
        case WindowTraits::Frame::resizable:
            return Qt::Window;
    }
    return Qt::Window;
}

/// In the middle of the primary screen, which may be smaller than what the window is meant to have.
void placeOnScreen(QWidget& window, const WindowTraits& traits) {
    window.setScreen(QGuiApplication::primaryScreen());
    const QRect room(window.screen()->availableGeometry().topLeft(), TextSize::roomFor(window));
    if (traits.frame == WindowTraits::Frame::resizable) {
        TextSize::limitSize(window, traits.minimumSize);
        window.resize(traits.size.boundedTo(room.size()));
    } else {
        TextSize::fixSize(window, traits.size);
    }
    QRect place(QPoint(), window.size());
    place.moveCenter(room.center());
    window.move(place.topLeft());
}

} // namespace

DesktopWindows::DesktopWindows(SettingsContext context, const SystemMotion& motion,
                               services::AppUpdateService& updates)
    : m_context(std::move(context)),
      m_store(m_context.store),
      m_motion(motion),
      m_updates(updates) {}

DesktopWindows::~DesktopWindows() = default;

const CommandActions& DesktopWindows::actions(WindowCoordinator& coordinator) {
    if (m_actions == nullptr) {
        m_actions = std::make_unique<CommandActions>(CommandContext{m_store, coordinator});
    }
    return *m_actions;
}

std::unique_ptr<QWidget> DesktopWindows::makeWindow(WindowRole role,
                                                    WindowCoordinator& coordinator) {
    const WindowTraits traits = windowTraits(role);
    std::unique_ptr<QWidget> window = makeContent(role, coordinator);
    window->setObjectName(traits.identifier);
    window->setWindowTitle(traits.title);
    window->setWindowFlags(windowFlags(traits.frame));
    placeOnScreen(*window, traits);
    return window;
}

std::unique_ptr<QWidget> DesktopWindows::makeEditor(WindowCoordinator& coordinator) {
    auto window =
        std::make_unique<EditorWindow>(m_store, coordinator, actions(coordinator), &m_updates);
    window->setReducedMotion(m_motion.isReduced());
    QObject::connect(&m_motion, &SystemMotion::changed, window.get(),
                     &EditorWindow::setReducedMotion);
    return window;
}

std::unique_ptr<QWidget> DesktopWindows::makeContent(WindowRole role,
                                                     WindowCoordinator& coordinator) {
    switch (role) {
        case WindowRole::editor:
            return makeEditor(coordinator);
        case WindowRole::welcome:
            return std::make_unique<WelcomePanel>(m_store, coordinator, actions(coordinator));
        case WindowRole::pluginLibrary:
            return makePluginLibrary(coordinator);
        case WindowRole::paintNetQuickStart:
            return std::make_unique<PaintNetQuickStartView>(actions(coordinator));
        case WindowRole::settings:
            return makeSettings(coordinator);
    }
    return nullptr;
}

std::unique_ptr<QWidget> DesktopWindows::makePluginLibrary(WindowCoordinator& coordinator) {
    auto window = std::make_unique<PluginLibraryView>(PluginLibraryContext{
        coordinator.plugins(), m_store,
        [&coordinator](const QString& id) { coordinator.runPlugin(id); }, runAlert});
    // What a plugin did can be undone where it was run.
    actions(coordinator)
        .addKeysTo(*window, {CommandID::newProject, CommandID::openProject, CommandID::save,
                             CommandID::undo, CommandID::redo, CommandID::pluginLibrary,
                             CommandID::preferences, CommandID::quit});
    return window;
}

std::unique_ptr<QWidget> DesktopWindows::makeSettings(WindowCoordinator& coordinator) {
    auto window = std::make_unique<PaintSettingsView>(m_context);
    actions(coordinator).addKeysTo(*window, {CommandID::preferences, CommandID::quit});
    return window;
}

} // namespace quillabrae::shell
