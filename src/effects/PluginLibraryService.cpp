// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginLibraryService.h"

#include "effects/PluginLibraryError.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quillabrae::effects {
namespace {

using platform::FileOperationError;

/// Many times the size of a manifest.
constexpr qint64 largestManifest = qint64{64} * 1024;

/// Ends the hidden name of a plugin's folder on its way out.
constexpr QLatin1StringView removedSuffix(".removed");

QString manifestIn(const QString& folder) {
    return folder + QStringLiteral("/manifest.json");
}

std::optional<QuillabraePlugin> readManifest(const QString& folder) {
    const QString path = manifestIn(folder);
    const QFileInfo information(path);
    // Something else than a file, a pipe for one, could keep a reader waiting.
    if (!information.isFile() || information.size() > largestManifest) return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    return pluginFromManifest(file.read(largestManifest));
}

/// Whether the id can be the name of a folder in another one.
bool isFolderName(const QString& id) {
    return !id.isEmpty() && !id.contains(u'/') && id != u"." && id != u"..";
}

} // namespace

PluginLibraryService::PluginLibraryService(QString installDirectory,
                                           platform::FileOperations& fileOperations,
                                           std::vector<QuillabraePlugin> catalog, QObject* parent)
    : QObject(parent),
      m_installDirectory(std::move(installDirectory)),
      m_fileOperations(fileOperations),
      m_catalog(std::move(catalog)) {
    reloadInstalledPlugins();
}

QString PluginLibraryService::defaultInstallDirectory(const platform::AppPaths& paths) {
    return paths.applicationSupport + QStringLiteral("/Plugins");
}

std::vector<QuillabraePlugin> PluginLibraryService::installedPlugins() const {
    std::vector<QuillabraePlugin> plugins;
    std::ranges::copy_if(m_catalog, std::back_inserter(plugins), [&](const auto& plugin) {
        return m_installedPluginIDs.contains(plugin.id);
    });
    return plugins;
}

const QuillabraePlugin* PluginLibraryService::plugin(const QString& id) const {
    const auto found = std::ranges::find(m_catalog, id, &QuillabraePlugin::id);
    return found == m_catalog.end() ? nullptr : &*found;
}

QString PluginLibraryService::folderOf(const QString& id) const {
    return m_installDirectory + u'/' + id;
}

void PluginLibraryService::writeManifest(const QString& folder, const QuillabraePlugin& plugin) {
    const QString staged = folder + QStringLiteral("/.manifest.json.writing");
    m_fileOperations.removeTree(staged);
    const auto file = m_fileOperations.createFile(staged);
    const QByteArray bytes = manifest(plugin);
    file->write(std::span<const char>(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    file->finish();
    m_fileOperations.rename(staged, manifestIn(folder));
}

void PluginLibraryService::install(const QuillabraePlugin& plugin) {
    using Reason = PluginLibraryError::Reason;
    const QuillabraePlugin* const row = this->plugin(plugin.id);
    if (!row || *row != plugin) throw PluginLibraryError(Reason::pluginNotInCatalog);
    const QString folder = folderOf(plugin.id);
    try {
        // A link would have the manifest written elsewhere.
        if (QFileInfo(folder).isSymLink()) m_fileOperations.removeTree(folder);
        m_fileOperations.makePath(folder);
    } catch (const FileOperationError& error) {
        throw PluginLibraryError(Reason::installFailed, error.description());
    }
    try {
        writeManifest(folder, plugin);
    } catch (const FileOperationError& error) {
        try {
            m_fileOperations.removeTree(folder);
        } catch (const FileOperationError&) {
            // The first error is the one to tell of.
        }
        throw PluginLibraryError(Reason::installFailed, error.description());
    }
    setInstalledPluginIDs(m_installedPluginIDs + QSet<QString>{plugin.id});
}

void PluginLibraryService::uninstall(const QuillabraePlugin& plugin) {
    try {
        if (isFolderName(plugin.id)) removeFolder(plugin.id);
    } catch (const FileOperationError& error) {
        throw PluginLibraryError(PluginLibraryError::Reason::uninstallFailed, error.description());
    }
    setInstalledPluginIDs(m_installedPluginIDs - QSet<QString>{plugin.id});
}

// Out of sight at once, so that there is never half a plugin.
void PluginLibraryService::removeFolder(const QString& id) {
    const QString folder = folderOf(id);
    if (!m_fileOperations.exists(folder)) return;
    const QString removed = folderOf(u'.' + id + removedSuffix);
    m_fileOperations.removeTree(removed);
    m_fileOperations.rename(folder, removed);
    removeLeftover(removed);
}

void PluginLibraryService::removeLeftover(const QString& folder) {
    try {
        m_fileOperations.removeTree(folder);
    } catch (const FileOperationError&) {
        // The next start tries again.
    }
}

void PluginLibraryService::reloadInstalledPlugins() {
    QSet<QString> ids;
    for (const QString& name : m_fileOperations.entries(m_installDirectory)) {
        if (name.startsWith(u'.')) {
            if (name.endsWith(removedSuffix)) removeLeftover(folderOf(name));
            continue;
        }
        const auto installed = readManifest(folderOf(name));
        if (!installed || installed->id != name) continue;
        const QuillabraePlugin* const row = plugin(name);
        if (row && *row == *installed) ids.insert(name);
    }
    setInstalledPluginIDs(ids);
}

void PluginLibraryService::setInstalledPluginIDs(const QSet<QString>& ids) {
    if (ids == m_installedPluginIDs) return;
    m_installedPluginIDs = ids;
    Q_EMIT installedPluginIDsChanged();
}

} // namespace quillabrae::effects
