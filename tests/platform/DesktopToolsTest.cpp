// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopRegistration.h"
#include "platform/GioFileIcons.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

/// A search path with one program in it, which writes down its arguments a second after it starts.
class DesktopTools : public ::testing::Test {
protected:
    void SetUp() override { qputenv("PATH", folder.path().toLocal8Bit()); }
    void TearDown() override { qputenv("PATH", m_searchPath); }

    void provide(const QString& program) const {
        QFile script(folder.filePath(program));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write(
            "#!/bin/sh\n/bin/sleep 1\nprintf '%s\\n' \"$@\" > \"$0.part\"\n"
            "/bin/mv \"$0.part\" \"$0.log\"\necho noise; echo noise >&2\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QByteArray argumentsOf(const QString& program) const {
        QFile log(folder.filePath(program + QStringLiteral(".log")));
        EXPECT_TRUE(QTest::qWaitFor([&] { return log.exists(); }));
        return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    }

    QTemporaryDir folder;

private:
    QByteArray m_searchPath = qgetenv("PATH");
};

TEST_F(DesktopTools, AFoldersIconIsSetByItsPathAndThePicturesUri) {
    provide(QStringLiteral("gio"));
    QElapsedTimer time;
    time.start();
    GioFileIcons().setIcon(QStringLiteral("/home/me/a b.quillabrae"),
                           QStringLiteral("/home/me/a b.quillabrae/QuickLook/Thumbnail.png"));
    EXPECT_LT(time.elapsed(), 900) << "it waited for the program";
    EXPECT_EQ(argumentsOf(QStringLiteral("gio")),
              QByteArray("set\n/home/me/a b.quillabrae\nmetadata::custom-icon\n"
                         "file:///home/me/a%20b.quillabrae/QuickLook/Thumbnail.png\n"));
}

TEST_F(DesktopTools, TheProjectTypeIsClaimedForTheInstalledProgram) {
    provide(QStringLiteral("xdg-mime"));
    XdgDesktopRegistration().claimProjectType();
    EXPECT_EQ(
        argumentsOf(QStringLiteral("xdg-mime")),
        QByteArray("default\ncom.orvik.Quillabrae.desktop\napplication/x-quillabrae-project\n"));
}

TEST_F(DesktopTools, WithoutTheProgramsNothingHappens) {
    GioFileIcons().setIcon(QStringLiteral("/nowhere"), QStringLiteral("/nowhere/a.png"));
    XdgDesktopRegistration().claimProjectType();
}

} // namespace
} // namespace quillabrae::platform
