// SPDX-License-Identifier: GPL-3.0-or-later
// What the editor writes for itself is for this user alone, and a link that somebody put where it
// writes leads to nothing being changed elsewhere.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ostream>

namespace quillabrae::faults {
namespace {

/// Everything that the editor writes below its own folders in a session, a closed and a killed one.
const QByteArray session =
    R"({"do": "store.createUntitledProject", "width": 24, "height": 16, "resolutionDPI": 96}
{"do": "store.selectAllCanvas"}
{"do": "store.copySelectedCanvasPixels"}
{"do": "set", "brushSize": 33}
{"do": "plugins.install", "plugin": "studio.quillabrae.ink-press"}
{"do": "store.rememberRecent", "value": "~/docs/a.quillabrae"}
{"do": "store.setClosedWorkAside"}
{"do": "store.invertActiveImage"}
{"do": "store.flipSelectedLayer", "horizontal": true}
{"do": "plugins.uninstall", "plugin": "studio.quillabrae.ink-press"}
{"do": "plugins.install", "plugin": "studio.quillabrae.monoform"}
)";

void putFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

class Home : public testing::Test {
protected:
    /// As a user who lets everybody read and write what he makes.
    QByteArray run(const QByteArray& script = session) const {
        QProcess editor;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(FAULTY_CALLS));
        environment.insert(QStringLiteral("QUILLABRAE_FAULTS_FROM"), QStringLiteral("start"));
        environment.insert(QStringLiteral("QUILLABRAE_FAULTS_BELOW"), m_root.filePath(homeName));
        environment.insert(QStringLiteral("QUILLABRAE_FAULTS_LOG"), log());
        editor.setProcessEnvironment(environment);
        editor.setChildProcessModifier([] { ::umask(0); });
        editor.start(QStringLiteral(QUILLABRAE_REPLAY),
                     {QStringLiteral("--home"), path(QString()), QStringLiteral("-")});
        editor.write(script);
        editor.closeWriteChannel();
        EXPECT_TRUE(editor.waitForFinished(60'000));
        return editor.readAllStandardOutput();
    }

    QString path(const QString& name) const {
        return m_root.filePath(homeName + QLatin1Char('/') + name);
    }
    /// The calls that `run` came to.
    QString log() const { return m_root.filePath(QStringLiteral("log")); }
    QString elsewhere(const QString& name) const {
        return m_root.filePath(QStringLiteral("elsewhere/") + name);
    }

    static mode_t modeOf(const QString& path) {
        struct stat facts {};
        EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &facts), 0);
        return facts.st_mode & 0777;
    }

private:
    const QString homeName = QStringLiteral("home");
    QTemporaryDir m_root;
};

class PrivateFolder : public Home, public testing::WithParamInterface<const char*> {
protected:
    QString folder() const { return path(QLatin1StringView(GetParam())); }
};

TEST_P(PrivateFolder, AndWhatIsInItAreForThisUserAlone) {
    run();
    EXPECT_EQ(modeOf(folder()), 0700U);
    int files = 0;
    QDirIterator entries(folder(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString file = entries.next();
        EXPECT_EQ(modeOf(file), 0600U) << file.toStdString();
        ++files;
    }
    EXPECT_GT(files, 0);
}

/// What is closed only when it is there has been open for a moment.
TEST_P(PrivateFolder, IsMadeForThisUserAloneWithAllInIt) {
    run();
    QFile calls(log());
    ASSERT_TRUE(calls.open(QIODevice::ReadOnly));
    const QByteArray own = QFile::encodeName(folder());
    int made = 0;
    for (const QByteArray& line : calls.readAll().split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() < 4 || !words[3].startsWith(own)) continue;
        // A file that is made in a folder, not under a name, is nobody's to open until it is
        // linked.
        const bool isNameless = words[1] == "create" && words[3] == own;
        // The toolkit's own lock says which process holds it, and no more.
        const bool isToolkitsLock = words[3].endsWith(".writing.lock");
        const bool isMaking = words[1] == "create" || words[1] == "mkdir" || words[1] == "link";
        if (!isMaking || isNameless || isToolkitsLock) continue;
        EXPECT_EQ(words[2].toUInt(nullptr, 8) & 077U, 0U) << line.constData();
        ++made;
    }
    EXPECT_GT(made, 1);
}

TEST_P(PrivateFolder, ThatWasOpenIsClosed) {
    QDir().mkpath(folder());
    ::chmod(QFile::encodeName(folder()).constData(), 0755);
    run();
    EXPECT_EQ(modeOf(folder()), 0700U);
}

INSTANTIATE_TEST_SUITE_P(Of, PrivateFolder,
                         testing::Values(".config/Quillabrae", ".local/share/Quillabrae/Autosave",
                                         ".local/share/Quillabrae/Clipboard"));

/// A place that is written to.
struct Place {
    const char* name;
    const char* path;
    enum class Kind { file, folder } kind = Kind::file;
    friend void PrintTo(const Place& place, std::ostream* stream) { *stream << place.path; }
};

constexpr Place places[] = {
    {"Recovery", ".local/share/Quillabrae/Autosave/Recovery.quillabraesession"},
    {"RecoverySpare", ".local/share/Quillabrae/Autosave/.Recovery.quillabraesession.spare"},
    {"RecoveryLock", ".local/share/Quillabrae/Autosave/.Recovery.quillabraesession.lock"},
    {"ClosedWork", ".local/share/Quillabrae/Autosave/Closed.quillabraesession"},
    {"ClosedSpare", ".local/share/Quillabrae/Autosave/.Closed.quillabraesession.spare"},
    {"PreferencesLock", ".config/Quillabrae/.preferences.ini.lock"},
    {"PluginFolder", ".local/share/Quillabrae/Plugins/studio.quillabrae.ink-press",
     Place::Kind::folder},
    {"PluginManifest", ".local/share/Quillabrae/Plugins/studio.quillabrae.ink-press/manifest.json"},
    {"PluginWriting",
     ".local/share/Quillabrae/Plugins/studio.quillabrae.ink-press/.manifest.json.writing"},
    {"PluginRemoved", ".local/share/Quillabrae/Plugins/.studio.quillabrae.ink-press.removed",
     Place::Kind::folder},
};

class LinkAt : public Home, public testing::WithParamInterface<Place> {};

TEST_P(LinkAt, APlaceThatIsWrittenToLeadsNowhere) {
    const QString link = path(QLatin1StringView(GetParam().path));
    const bool isFolder = GetParam().kind == Place::Kind::folder;
    const QString target = elsewhere(QStringLiteral("target"));
    const QString mine = isFolder ? target + QStringLiteral("/mine") : target;
    putFile(mine, "mine");
    ::chmod(QFile::encodeName(mine).constData(), 0644);
    QDir().mkpath(QFileInfo(link).path());
    ASSERT_TRUE(QFile::link(target, link));
    for (int start = 0; start < 2; ++start) {
        run();
        QFile kept(mine);
        ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
        EXPECT_EQ(kept.readAll(), "mine");
        EXPECT_EQ(modeOf(mine), 0644U);
        if (isFolder) {
            EXPECT_EQ(
                QDir(target).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                QStringList(QStringLiteral("mine")));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, LinkAt, testing::ValuesIn(places),
                         [](const auto& place) { return place.param.name; });

TEST_F(Home, ALinkThatLeadsNowhereIsNotMadeAFile) {
    const QString link =
        path(QStringLiteral(".local/share/Quillabrae/Autosave/.Recovery.quillabraesession.lock"));
    QDir().mkpath(QFileInfo(link).path());
    ASSERT_TRUE(QFile::link(elsewhere(QStringLiteral("new")), link));
    QDir().mkpath(elsewhere(QString()));
    run();
    EXPECT_FALSE(QFile::exists(elsewhere(QStringLiteral("new"))));
}

/// Users keep documents and settings behind links: what a link leads to is what is meant.
TEST_F(Home, ADocumentAndSettingsBehindALinkAreWrittenThere) {
    putFile(elsewhere(QStringLiteral("p.png")), "old");
    putFile(elsewhere(QStringLiteral("preferences.ini")), "");
    QDir().mkpath(path(QStringLiteral("docs")));
    QDir().mkpath(path(QStringLiteral(".config/Quillabrae")));
    const QString document = path(QStringLiteral("docs/p.png"));
    const QString settings = path(QStringLiteral(".config/Quillabrae/preferences.ini"));
    ASSERT_TRUE(QFile::link(elsewhere(QStringLiteral("p.png")), document));
    ASSERT_TRUE(QFile::link(elsewhere(QStringLiteral("preferences.ini")), settings));
    run(session +
        R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/docs/p.png", "format": "png"}})"
        "\n");
    for (const QString& link : {document, settings})
        EXPECT_TRUE(QFileInfo(link).isSymLink()) << link.toStdString();
    EXPECT_GT(QFileInfo(elsewhere(QStringLiteral("p.png"))).size(), 50);
    EXPECT_GT(QFileInfo(elsewhere(QStringLiteral("preferences.ini"))).size(), 50);
}

} // namespace
} // namespace quillabrae::faults
