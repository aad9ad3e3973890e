// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/PluginCatalog.h"
#include "effects/QuillabraePlugin.h"
#include "platform/AppPaths.h"
#include "platform/FileOperations.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <vector>

namespace quillabrae::effects {

/// What of the catalogue the user has installed. A plugin is installed while the install folder has
/// a folder of its id that holds "manifest.json", the plugin's record as the catalogue has it. The
/// folder is read once, at the start. Main thread only.
class PluginLibraryService final : public QObject {
    Q_OBJECT

public:
    /// `installDirectory` need not exist. `fileOperations` outlives the service.
    explicit PluginLibraryService(
        QString installDirectory,
        platform::FileOperations& fileOperations = platform::systemFileOperations(),
        std::vector<QuillabraePlugin> catalog = pluginCatalog(), QObject* parent = nullptr);

    /// Where this user's plugins are installed.
    static QString defaultInstallDirectory(const platform::AppPaths& paths);

    const QString& installDirectory() const { return m_installDirectory; }
    const std::vector<QuillabraePlugin>& catalog() const { return m_catalog; }
    const QSet<QString>& installedPluginIDs() const { return m_installedPluginIDs; }
    /// In the catalogue's order.
    std::vector<QuillabraePlugin> installedPlugins() const;
    /// The catalogue's plugin of that id; null without one.
    const QuillabraePlugin* plugin(const QString& id) const;

    /// Writes the plugin's manifest; its folder goes when that fails, and what counts as installed
    /// stays as it was until the folder is read again. Throws PluginLibraryError, also for a plugin
    /// that differs from the catalogue's.
    void install(const QuillabraePlugin& plugin);
    /// Removes the plugin's folder, if there is one. Throws PluginLibraryError.
    void uninstall(const QuillabraePlugin& plugin);
    /// Reads the install folder again. What is no manifest of a plugin in the catalogue does not
    /// count.
    void reloadInstalledPlugins();

Q_SIGNALS:
    void installedPluginIDsChanged();

private:
    QString folderOf(const QString& id) const;
    void removeFolder(const QString& id);
    void removeLeftover(const QString& folder);
    void writeManifest(const QString& folder, const QuillabraePlugin& plugin);
    void setInstalledPluginIDs(const QSet<QString>& ids);

    QString m_installDirectory;
    platform::FileOperations& m_fileOperations;
    std::vector<QuillabraePlugin> m_catalog;
    QSet<QString> m_installedPluginIDs;
};

} // namespace quillabrae::effects
