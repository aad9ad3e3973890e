// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/Session.h"

#include "replay/Arguments.h"
#include "replay/ScriptError.h"

#include <cmath>

namespace quillabrae::replay {

QDateTime ScriptClock::now() const {
    const auto passed = static_cast<qint64>(std::llround(m_time.now() * 1000.0));
    return QDateTime::currentDateTimeUtc().addMSecs(passed);
}

Session::Session(const SessionPlaces& places)
    : m_panels([this](const QString& path) { return QUrl::fromLocalFile(resolvedPath(path)); }) {
    if (places.home.isEmpty()) m_temporaryHome.emplace();
    m_home.setPath(
        QDir(places.home.isEmpty() ? m_temporaryHome->path() : places.home).absolutePath());
    m_home.mkpath(QStringLiteral("."));
    m_paths = platform::AppPaths::under(m_home.path());
    if (!places.applicationSupport.isEmpty())
        m_paths.applicationSupport = QDir(places.applicationSupport).absolutePath();
    m_preferences.emplace(m_paths.preferencesFile, platform::SettingsPreferences::Writing::atOnce);
    m_store = std::make_unique<store::ProjectStore>(
        store::StoreEnvironment{
            m_panels, *m_preferences, m_clock, m_fileIcons, m_pasteboard, m_paths,
            platform::directWorkRunner(),
            [this](const QByteArray& svg) { return m_panels.importSvg(svg); },
            platform::makeDirectLatestWork, platform::takeFileLock,
            store::GenerativeFillServices{m_fillService.keychain, m_fillService.imageEdit},
            &m_usage},
        store::Persistence::on);
    m_canvas = std::make_unique<CanvasStage>(*m_store, m_time);
}

QString Session::resolvedPath(const QString& path) const {
    if (path.startsWith(QLatin1StringView("~/"))) return m_home.filePath(path.mid(2));
    return QDir::current().absoluteFilePath(path);
}

QUuid Session::projectID(const QJsonValue& value, const QString& what) const {
    if (value.isDouble()) {
        const int index = integerFrom(value, what);
        if (index < 0 || index >= static_cast<int>(m_store->openProjects().size()))
            throw ScriptError(
                QStringLiteral("\"%1\": no project at index %2").arg(what).arg(index));
        return m_store->openProjects()[static_cast<std::size_t>(index)].id;
    }
    const QString text = textFrom(value, what);
    if (text == QLatin1StringView("active")) return activeProject().id;
    const QUuid id = QUuid::fromString(text);
    if (id.isNull()) throw ScriptError(QStringLiteral("\"%1\" is no id: %2").arg(what, text));
    return id;
}

QUuid Session::layerID(const QJsonValue& value, const QString& what) const {
    const model::PaintProject& project = activeProject();
    if (value.isDouble()) {
        const int index = integerFrom(value, what);
        if (index < 0 || index >= static_cast<int>(project.layers.size()))
            throw ScriptError(QStringLiteral("\"%1\": no layer at index %2").arg(what).arg(index));
        return project.layers[static_cast<std::size_t>(index)].id;
    }
    const QString text = textFrom(value, what);
    return text == QLatin1StringView("selected") ? project.selectedLayerID
                                                 : QUuid::fromString(text);
}

const model::PaintProject& Session::activeProject() const {
    const model::PaintProject* active = m_store->activeProject();
    if (!active) throw ScriptError(QStringLiteral("no project is active"));
    return *active;
}

void Session::discardTemporaryHome() {
    if (m_temporaryHome) m_temporaryHome->remove();
}

} // namespace quillabrae::replay
