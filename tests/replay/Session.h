// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/MemoryPasteboard.h"
#include "platform/SettingsPreferences.h"
#include "replay/CanvasStage.h"
#include "replay/ScriptedFillService.h"
#include "replay/ScriptedPanels.h"
#include "replay/VirtualTime.h"
#include "store/ProjectStore.h"
#include "support/NotedUsage.h"

#include <QDir>
#include <QJsonValue>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

namespace quillabrae::replay {

/// The machine's clock with the script's own time on top.
class ScriptClock final : public platform::Clock {
public:
    explicit ScriptClock(const VirtualTime& time) : m_time(time) {}
    QDateTime now() const override;

private:
    const VirtualTime& m_time;
};

/// Where a run keeps what the editor would store. Empty texts stand for what was not given.
struct SessionPlaces {
    /// The home directory; a fresh temporary one when empty.
    QString home;
    /// The program's own data folder; the one under the home when empty.
    QString applicationSupport;
};

/// How a script has asked for the end of its run.
enum class SessionEnd { none, cleanly, killed };

/// One run of the editor without a screen: the store, everything that it needs of the world, and
/// the script's time.
class Session {
public:
    explicit Session(const SessionPlaces& places);

    store::ProjectStore& store() { return *m_store; }
    const store::ProjectStore& store() const { return *m_store; }
    ScriptedPanels& panels() { return m_panels; }
    VirtualTime& time() { return m_time; }
    platform::MemoryPasteboard& pasteboard() { return m_pasteboard; }
    ScriptedFillService& fillService() { return m_fillService; }
    const tests::NotedUsage& usage() const { return m_usage; }
    const platform::AppPaths& paths() const { return m_paths; }
    CanvasStage& canvas() { return *m_canvas; }
    /// Where the recovery file is.
    QString autosaveFolder() const { return m_paths.autosaveFolder(); }

    /// A path of a script: "~/" is the run's home, others are relative to the current directory.
    QString resolvedPath(const QString& path) const;

    /// A project named by an id's text, "active", or an index. Throws ScriptError where it is none.
    QUuid projectID(const QJsonValue& value, const QString& what) const;
    /// A layer of the active project named by an id's text, "selected", or an index. Throws
    /// ScriptError for an index that is none; an id may be a stranger's.
    QUuid layerID(const QJsonValue& value, const QString& what) const;
    /// The active project. Throws ScriptError without one.
    const model::PaintProject& activeProject() const;

    /// Runs a line inside another one.
    std::function<QJsonValue(const QJsonObject& line)> runLine;

    /// What the last line printed as its result, lines that only expect something left out.
    QJsonValue lastResult;

    /// Ends the run after the present line.
    void end(SessionEnd end) { m_end = end; }
    SessionEnd ending() const { return m_end; }

    /// Removes the home if it was made for this run. For the moment before the process ends without
    /// destructors.
    void discardTemporaryHome();

private:
    std::optional<QTemporaryDir> m_temporaryHome;
    QDir m_home;
    platform::AppPaths m_paths;
    VirtualTime m_time;
    ScriptClock m_clock{m_time};
    platform::NoFileIcons m_fileIcons;
    platform::MemoryPasteboard m_pasteboard;
    ScriptedPanels m_panels;
    ScriptedFillService m_fillService;
    tests::NotedUsage m_usage;
    std::optional<platform::SettingsPreferences> m_preferences;
    std::unique_ptr<store::ProjectStore> m_store;
    std::unique_ptr<CanvasStage> m_canvas;
    SessionEnd m_end = SessionEnd::none;
};

} // namespace quillabrae::replay
