// SPDX-License-Identifier: GPL-3.0-or-later
// On a real folder.
#include "effects/PluginLibraryError.h"
#include "effects/PluginLibraryService.h"
#include "persistence/FaultyFileOperations.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <optional>
#include <string>

namespace quillabrae::effects {
namespace {

using Reason = PluginLibraryError::Reason;

class PluginLibraryTest : public testing::Test {
protected:
    QString folder() const { return root.path() + QStringLiteral("/data/Plugins"); }
    QString folderOf(const QuillabraePlugin& plugin) const { return folder() + u'/' + plugin.id; }
    QString manifestOf(const QuillabraePlugin& plugin) const {
        return folderOf(plugin) + QStringLiteral("/manifest.json");
    }

    static QByteArray read(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        return file.readAll();
    }

    static void write(const QString& path, const QByteArray& bytes) {
        EXPECT_TRUE(QFileInfo(path).dir().mkpath(QStringLiteral(".")));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
        file.write(bytes);
    }

    /// What another start of the program finds.
    QSet<QString> installedAtNextStart() const {
        return PluginLibraryService(folder()).installedPluginIDs();
    }

    static std::optional<Reason> failureOf(const std::function<void()>& run) {
        try {
            run();
            return std::nullopt;
        } catch (const PluginLibraryError& error) {
            return error.reason();
        }
    }

    static void failAt(persistence::FaultyFileOperations& operations, const std::string& step) {
        operations.beforeStep = [step](int, const char* name) {
            if (name == step) throw platform::FileOperationError(QString(), ENOSPC);
        };
    }

    QTemporaryDir root;
    const QuillabraePlugin first = pluginCatalog()[0];
    const QuillabraePlugin second = pluginCatalog()[1];
};

TEST_F(PluginLibraryTest, StartsEmptyWhereThereIsNoFolder) {
    const PluginLibraryService service(folder());
    EXPECT_TRUE(service.installedPluginIDs().isEmpty());
    EXPECT_TRUE(service.installedPlugins().empty());
    EXPECT_EQ(service.catalog(), pluginCatalog());
    EXPECT_FALSE(QFile::exists(folder()));
}

TEST_F(PluginLibraryTest, LivesInTheUsersDataFolder) {
    const auto paths = platform::AppPaths::under(root.path());
    EXPECT_EQ(PluginLibraryService::defaultInstallDirectory(paths),
              root.path() + QStringLiteral("/.local/share/Quillabrae/Plugins"));
}

TEST_F(PluginLibraryTest, InstallWritesAManifestThatTheNextStartFinds) {
    PluginLibraryService service(folder());
    const QSignalSpy changed(&service, &PluginLibraryService::installedPluginIDsChanged);
    service.install(first);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(service.installedPluginIDs(), QSet<QString>{first.id});
    EXPECT_EQ(read(manifestOf(first)), manifest(first));
    EXPECT_EQ(QDir(folderOf(first)).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("manifest.json")});
    EXPECT_EQ(installedAtNextStart(), QSet<QString>{first.id});
}

TEST_F(PluginLibraryTest, InstallAgainMendsTheManifest) {
    PluginLibraryService service(folder());
    service.install(first);
    write(manifestOf(first), "{");
    EXPECT_TRUE(installedAtNextStart().isEmpty());
    service.install(first);
    EXPECT_EQ(installedAtNextStart(), QSet<QString>{first.id});
}

TEST_F(PluginLibraryTest, InstalledPluginsComeInTheCataloguesOrder) {
    PluginLibraryService service(folder());
    service.install(pluginCatalog()[4]);
    service.install(second);
    service.install(first);
    const std::vector<QuillabraePlugin> expected{first, second, pluginCatalog()[4]};
    EXPECT_EQ(service.installedPlugins(), expected);
}

TEST_F(PluginLibraryTest, FindsPluginsOfTheCatalogueAlone) {
    const PluginLibraryService service(folder());
    ASSERT_NE(service.plugin(first.id), nullptr);
    EXPECT_EQ(*service.plugin(first.id), first);
    EXPECT_EQ(service.plugin(QStringLiteral("studio.quillabrae.other")), nullptr);
}

TEST_F(PluginLibraryTest, InstallRefusesWhatTheCatalogueDoesNotHave) {
    PluginLibraryService service(folder());
    QuillabraePlugin unknown = first;
    unknown.id = QStringLiteral("../elsewhere");
    EXPECT_EQ(failureOf([&] { service.install(unknown); }), Reason::pluginNotInCatalog);
    QuillabraePlugin changed = first;
    changed.tagline += u'!';
    EXPECT_EQ(failureOf([&] { service.install(changed); }), Reason::pluginNotInCatalog);
    EXPECT_FALSE(QFile::exists(folder()));
}

TEST_F(PluginLibraryTest, InstallFailsWhereTheFolderCannotBe) {
    write(root.path() + QStringLiteral("/data"), "a file in the way");
    PluginLibraryService service(folder());
    try {
        service.install(first);
        FAIL();
    } catch (const PluginLibraryError& error) {
        EXPECT_EQ(error.description(),
                  QStringLiteral("The plugin could not be installed: Not a directory"));
    }
    EXPECT_TRUE(service.installedPluginIDs().isEmpty());
}

TEST_F(PluginLibraryTest, InstallThatCannotWriteLeavesNoFolder) {
    for (const char* step : {"createFile", "write", "finish", "rename"}) {
        SCOPED_TRACE(step);
        persistence::FaultyFileOperations operations;
        PluginLibraryService service(folder(), operations);
        failAt(operations, step);
        EXPECT_EQ(failureOf([&] { service.install(first); }), Reason::installFailed);
        EXPECT_FALSE(QFile::exists(folderOf(first)));
        EXPECT_TRUE(service.installedPluginIDs().isEmpty());
    }
}

TEST_F(PluginLibraryTest, AnotherInstallThatFailsLeavesWhatIsListedUntilTheNextStart) {
    persistence::FaultyFileOperations operations;
    PluginLibraryService service(folder(), operations);
    service.install(first);
    const QSignalSpy changes(&service, &PluginLibraryService::installedPluginIDsChanged);
    failAt(operations, "write");
    EXPECT_EQ(failureOf([&] { service.install(first); }), Reason::installFailed);
    // The folder is gone, as one is that somebody else removes: running goes on meanwhile.
    EXPECT_FALSE(QFile::exists(folderOf(first)));
    EXPECT_EQ(service.installedPluginIDs(), QSet<QString>{first.id});
    EXPECT_EQ(changes.count(), 0);
    EXPECT_TRUE(installedAtNextStart().isEmpty());
}

TEST_F(PluginLibraryTest, UninstallRemovesTheFolder) {
    PluginLibraryService service(folder());
    service.install(first);
    service.install(second);
    write(folderOf(first) + QStringLiteral("/more/thing"), "something");
    service.uninstall(first);
    EXPECT_EQ(service.installedPluginIDs(), QSet<QString>{second.id});
    EXPECT_FALSE(QFile::exists(folderOf(first)));
    EXPECT_EQ(installedAtNextStart(), QSet<QString>{second.id});
}

TEST_F(PluginLibraryTest, UninstallWithoutAFolderDropsTheId) {
    PluginLibraryService service(folder());
    service.install(first);
    ASSERT_TRUE(QDir(folderOf(first)).removeRecursively());
    service.uninstall(first);
    EXPECT_TRUE(service.installedPluginIDs().isEmpty());
    service.uninstall(second);
}

TEST_F(PluginLibraryTest, UninstallStaysWithinTheInstallFolder) {
    PluginLibraryService service(folder());
    service.install(first);
    const QString neighbour = root.path() + QStringLiteral("/data/keep");
    write(neighbour, "kept");
    for (const QString& id : {QString(), QStringLiteral("."), QStringLiteral(".."),
                              QStringLiteral("../keep"), QStringLiteral("../../data")}) {
        QuillabraePlugin stray = first;
        stray.id = id;
        service.uninstall(stray);
    }
    EXPECT_TRUE(QFile::exists(neighbour));
    EXPECT_EQ(installedAtNextStart(), QSet<QString>{first.id});
}

TEST_F(PluginLibraryTest, UninstallThatFailsKeepsTheId) {
    persistence::FaultyFileOperations operations;
    PluginLibraryService service(folder(), operations);
    service.install(first);
    failAt(operations, "removeTree");
    try {
        service.uninstall(first);
        FAIL();
    } catch (const PluginLibraryError& error) {
        EXPECT_EQ(error.reason(), Reason::uninstallFailed);
        EXPECT_TRUE(
            error.description().startsWith(QStringLiteral("The plugin could not be removed: ")));
    }
    EXPECT_EQ(service.installedPluginIDs(), QSet<QString>{first.id});
}

TEST_F(PluginLibraryTest, AFolderOfAnotherNameDoesNotCount) {
    write(folder() + QStringLiteral("/studio.quillabrae.other/manifest.json"), manifest(first));
    write(folder() + u'/' + second.id + QStringLiteral("/manifest.json"), manifest(first));
    EXPECT_TRUE(installedAtNextStart().isEmpty());
}

TEST_F(PluginLibraryTest, AManifestEditedByHandDoesNotCount) {
    for (const QuillabraePlugin& plugin : pluginCatalog()) {
        QuillabraePlugin edited = plugin;
        edited.tagline += u'.';
        write(manifestOf(plugin), manifest(edited));
    }
    EXPECT_TRUE(installedAtNextStart().isEmpty());
}

TEST_F(PluginLibraryTest, AManifestOfAnOlderCatalogueCountsAgainOnceReinstalled) {
    std::vector<QuillabraePlugin> older = pluginCatalog();
    older.front().version = QStringLiteral("0.9.0");
    PluginLibraryService(folder(), platform::systemFileOperations(), older).install(older.front());
    PluginLibraryService service(folder());
    EXPECT_TRUE(service.installedPluginIDs().isEmpty());
    service.install(first);
    EXPECT_EQ(installedAtNextStart(), QSet<QString>{first.id});
}

TEST_F(PluginLibraryTest, WhatIsNoManifestDoesNotCount) {
    write(manifestOf(first), manifest(first).chopped(2));
    write(manifestOf(second), QByteArray());
    write(folder() + QStringLiteral("/manifest.json"), manifest(first));
    write(folder() + QStringLiteral("/.") + first.id + QStringLiteral("/manifest.json"),
          manifest(first));
    ASSERT_TRUE(
        QDir().mkpath(folder() + u'/' + pluginCatalog()[2].id + QStringLiteral("/manifest.json")));
    write(folder() + u'/' + pluginCatalog()[3].id, "a file where a folder should be");
    // Whole but for a megabyte after it.
    write(manifestOf(pluginCatalog()[4]), manifest(pluginCatalog()[4]) + QByteArray(1 << 20, ' '));
    EXPECT_TRUE(installedAtNextStart().isEmpty());
}

TEST_F(PluginLibraryTest, AManifestNobodyMayReadDoesNotCount) {
    PluginLibraryService(folder()).install(first);
    QFile::setPermissions(manifestOf(first), {});
    const tests::OrdinaryUser user;
    EXPECT_TRUE(installedAtNextStart().isEmpty());
}

TEST_F(PluginLibraryTest, WhatHappensBehindItsBackIsSeenOnReloading) {
    PluginLibraryService service(folder());
    service.install(first);
    ASSERT_TRUE(QDir(folderOf(first)).removeRecursively());
    write(manifestOf(second), manifest(second));
    EXPECT_EQ(service.installedPluginIDs(), QSet<QString>{first.id});
    const QSignalSpy changed(&service, &PluginLibraryService::installedPluginIDsChanged);
    service.reloadInstalledPlugins();
    EXPECT_EQ(service.installedPluginIDs(), QSet<QString>{second.id});
    EXPECT_EQ(changed.count(), 1);
    service.reloadInstalledPlugins();
    EXPECT_EQ(changed.count(), 1);
}

} // namespace
} // namespace quillabrae::effects
