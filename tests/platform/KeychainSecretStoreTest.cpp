// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop's secret store, asked for real: a gnome-keyring on a session bus of the test's own.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace quillabrae::platform {
namespace {

/// Anybody on this bus may do anything, and it starts no services.
constexpr char busConfiguration[] = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

void stop(QProcess& process) {
    if (process.state() == QProcess::NotRunning) return;
    process.terminate();
    if (!process.waitForFinished(5'000)) process.kill();
    process.waitForFinished();
}

/// The parameter is how the store is asked: "" blocks, "begin-" does not.
class KeychainSecretStoreTest : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_TRUE(home.isValid());
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
        for (const char* name : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "DISPLAY",
                                 "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION"})
            environment.remove(QString::fromLatin1(name));
        QFile configuration(home.filePath(QStringLiteral("bus.conf")));
        ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
        configuration.write(QString::fromLatin1(busConfiguration).arg(home.path()).toUtf8());
        configuration.close();
        bus.setProcessEnvironment(environment);
        bus.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                   QStringLiteral("--config-file=") + configuration.fileName()});
        ASSERT_TRUE(bus.waitForReadyRead(10'000));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           QString::fromUtf8(bus.readLine().trimmed()));
    }
    void TearDown() override {
        stop(keyring);
        stop(bus);
    }

    /// Starts the keyring: unlocked with the password that it is to be unlocked by, or else as it
    /// is after a log-in without one.
    void startKeyring(const QByteArray& password) {
        QStringList arguments{QStringLiteral("--foreground"),
                              QStringLiteral("--components=secrets")};
        if (!password.isEmpty()) arguments << QStringLiteral("--unlock");
        keyring.setProcessEnvironment(environment);
        keyring.start(QStringLiteral("gnome-keyring-daemon"), arguments);
        ASSERT_TRUE(keyring.waitForStarted());
        keyring.write(password);
        keyring.closeWriteChannel();
        // Another name of the same service, which it takes last.
        for (int attempt = 0; attempt < 100 && !isKeyringThere(); ++attempt)
            keyring.waitForReadyRead(50);
        ASSERT_TRUE(isKeyringThere());
    }
    bool isKeyringThere() const {
        QProcess call;
        call.setProcessEnvironment(environment);
        call.start(
            QStringLiteral("dbus-send"),
            {QStringLiteral("--session"), QStringLiteral("--print-reply"),
             QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
             QStringLiteral("org.freedesktop.DBus.NameHasOwner"),
             QStringLiteral("string:org.freedesktop.secrets")});
        call.waitForFinished();
        return call.readAllStandardOutput().contains("true");
    }

    QString ask(const QStringList& arguments) const {
        QProcess process;
        process.setProcessEnvironment(environment);
        QStringList asked = arguments;
        asked.front().prepend(QString::fromLatin1(GetParam()));
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/ask-secret-store"),
                      asked);
        EXPECT_TRUE(process.waitForFinished(20'000));
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    QString load(const QString& account = QStringLiteral("account")) const {
        return ask({QStringLiteral("load"), QStringLiteral("service"), account});
    }
    QString save(const QString& secret, const QString& account = QStringLiteral("account")) const {
        return ask({QStringLiteral("save"), QStringLiteral("service"), account, secret});
    }
    QString remove() const {
        return ask(
            {QStringLiteral("remove"), QStringLiteral("service"), QStringLiteral("account")});
    }

    QTemporaryDir home;
    QProcessEnvironment environment;
    QProcess bus;
    QProcess keyring;
};

TEST_P(KeychainSecretStoreTest, KeepsReplacesAndRemovesASecret) {
    startKeyring("password");
    EXPECT_EQ(load(), QStringLiteral("nothing"));
    EXPECT_EQ(save(QStringLiteral("first")), QStringLiteral("done"));
    EXPECT_EQ(load(), QStringLiteral("found first"));
    EXPECT_EQ(save(QStringLiteral("sécond “2”")), QStringLiteral("done"));
    EXPECT_EQ(load(), QStringLiteral("found sécond “2”"));
    EXPECT_EQ(load(QStringLiteral("other")), QStringLiteral("nothing"));
    EXPECT_EQ(remove(), QStringLiteral("done"));
    EXPECT_EQ(load(), QStringLiteral("nothing"));
    EXPECT_EQ(remove(), QStringLiteral("done"));
}

TEST_P(KeychainSecretStoreTest, SavingTwiceLeavesOneItem) {
    startKeyring("password");
    save(QStringLiteral("first"));
    save(QStringLiteral("second"));
    QProcess search;
    search.setProcessEnvironment(environment);
    search.start(QStringLiteral("secret-tool"),
                 {QStringLiteral("search"), QStringLiteral("--all"), QStringLiteral("server"),
                  QStringLiteral("service")});
    ASSERT_TRUE(search.waitForFinished());
    const QByteArray found = search.readAllStandardOutput();
    EXPECT_EQ(found.count("secret = "), 1) << found.constData();
    EXPECT_TRUE(found.contains("secret = second")) << found.constData();
}

TEST_P(KeychainSecretStoreTest, ASecretOutlivesTheKeyring) {
    startKeyring("password");
    save(QStringLiteral("kept"));
    stop(keyring);
    startKeyring("password");
    EXPECT_EQ(load(), QStringLiteral("found kept"));
}

TEST_P(KeychainSecretStoreTest, ALockedStoreThatNobodyUnlocksRefuses) {
    startKeyring("password");
    save(QStringLiteral("kept"));
    stop(keyring);
    startKeyring("");
    EXPECT_FALSE(load().startsWith(QStringLiteral("found"))) << qPrintable(load());
    EXPECT_TRUE(save(QStringLiteral("new")).startsWith(QStringLiteral("refused ")));
    stop(keyring);
    startKeyring("password");
    EXPECT_EQ(load(), QStringLiteral("found kept"));
}

TEST_P(KeychainSecretStoreTest, WithoutAStoreEveryCallIsRefused) {
    for (const QString& answer : {load(), save(QStringLiteral("canary")), remove()}) {
        EXPECT_TRUE(answer.startsWith(QStringLiteral("refused "))) << qPrintable(answer);
        EXPECT_GT(answer.size(), 10);
        EXPECT_FALSE(answer.contains(QStringLiteral("canary"))) << qPrintable(answer);
    }
}

INSTANTIATE_TEST_SUITE_P(BothWays, KeychainSecretStoreTest, testing::Values("", "begin-"),
                         [](const auto& way) {
                             return std::string(*way.param == 0 ? "Blocking" : "Begun");
                         });

} // namespace
} // namespace quillabrae::platform
