// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MemoryPreferences.h"
#include "platform/SettingsPreferences.h"
#include "support/FullDisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillabrae::platform {
namespace {

using Writing = SettingsPreferences::Writing;

const QString key = QStringLiteral("Quillabrae.something");

class StoredPreferences : public ::testing::Test {
protected:
    /// What another start of the program reads.
    QVariant storedValue() const { return SettingsPreferences(file, Writing::atOnce).value(key); }

    QStringList names() const {
        return QFileInfo(file).dir().entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    static mode_t modeOf(const QString& path) {
        struct stat information {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &information), 0);
        return information.st_mode & 07777;
    }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("deeper/preferences.ini"));
};

TEST(Preferences, AnAbsentBooleanIsItsFallbackAndAStoredFalseIsFalse) {
    MemoryPreferences preferences;
    EXPECT_TRUE(preferences.boolean(key, true));
    EXPECT_FALSE(preferences.boolean(key, false));
    preferences.setValue(key, false);
    EXPECT_FALSE(preferences.boolean(key, true));
    preferences.remove(key);
    EXPECT_TRUE(preferences.boolean(key, true));
}

TEST(Preferences, WhatIsNoBooleanIsTheFallback) {
    MemoryPreferences preferences;
    for (const QVariant& value : {QVariant(QStringLiteral("yes")), QVariant(0), QVariant(1.0)}) {
        preferences.setValue(key, value);
        EXPECT_TRUE(preferences.boolean(key, true));
    }
}

TEST(Preferences, WhatIsNoWholeNumberIsTheFallback) {
    MemoryPreferences preferences;
    for (const QVariant& value : {QVariant(QStringLiteral("25.5")), QVariant(25.0), QVariant(true),
                                  QVariant(QByteArray("25")), QVariant(1LL << 40)}) {
        preferences.setValue(key, value);
        EXPECT_EQ(preferences.integer(key, 7), 7) << value.typeName();
    }
    preferences.setValue(key, 50);
    EXPECT_EQ(preferences.integer(key, 7), 50);
}

/// The keys that a change was told of, in turn.
class ChangeLog {
public:
    explicit ChangeLog(Preferences& preferences) {
        QObject::connect(&preferences.changes(), &PreferenceChanges::changed, &m_context,
                         [this](const QString& changed) { keys << changed; });
    }
    QStringList keys;

private:
    QObject m_context;
};

void makeChanges(Preferences& preferences) {
    preferences.setValue(key, true);
    preferences.setValue(key, true);
    preferences.setValue(key, false);
    preferences.remove(key);
    preferences.remove(key);
}

TEST_F(StoredPreferences, TellOfEachChangeAndOfNothingElse) {
    const QStringList expected{key, key, key};
    MemoryPreferences inMemory;
    const ChangeLog ofMemory(inMemory);
    makeChanges(inMemory);
    EXPECT_EQ(ofMemory.keys, expected);
    for (const Writing writing : {Writing::atOnce, Writing::gathered}) {
        SettingsPreferences inFile(file, writing);
        const ChangeLog ofFile(inFile);
        makeChanges(inFile);
        EXPECT_EQ(ofFile.keys, expected);
    }
}

TEST_F(StoredPreferences, AChangeIsSeenByThoseWhoAreToldOfIt) {
    SettingsPreferences preferences(file, Writing::gathered);
    QVariant seen;
    QObject::connect(&preferences.changes(), &PreferenceChanges::changed, &preferences.changes(),
                     [&] { seen = preferences.value(key); });
    preferences.setValue(key, 7);
    EXPECT_EQ(seen, QVariant(7));
}

TEST_F(StoredPreferences, AnotherStartReadsWhatWasWritten) {
    SettingsPreferences preferences(file, Writing::atOnce);
    preferences.setValue(key, false);
    EXPECT_FALSE(SettingsPreferences(file, Writing::atOnce).boolean(key, true));
    preferences.setValue(key, 50);
    EXPECT_EQ(SettingsPreferences(file, Writing::atOnce).integer(key, 7), 50);
    preferences.setValue(key, QStringLiteral("Not connected"));
    EXPECT_EQ(storedValue().toString(), QStringLiteral("Not connected"));
}

TEST_F(StoredPreferences, BytesOfEveryValueSurvive) {
    QByteArray bytes("{\n  \"a\": [1, 2, 3], \"z\": \"\\u00e9, ;=@\"\n}");
    for (int value = 0; value < 256; ++value) bytes.append(static_cast<char>(value));
    SettingsPreferences(file, Writing::atOnce).setValue(key, bytes);
    EXPECT_EQ(SettingsPreferences(file, Writing::atOnce).bytes(key), bytes);
}

TEST_F(StoredPreferences, ARemovedKeyIsAbsentAgain) {
    SettingsPreferences preferences(file, Writing::atOnce);
    preferences.setValue(key, true);
    preferences.remove(key);
    EXPECT_FALSE(preferences.value(key).isValid());
    EXPECT_FALSE(storedValue().isValid());
}

TEST_F(StoredPreferences, GatheredChangesAreReadAtOnceAndWrittenAMomentLater) {
    SettingsPreferences preferences(file, Writing::gathered);
    preferences.setValue(key, 1);
    preferences.setValue(key, 2);
    EXPECT_EQ(preferences.integer(key, 0), 2);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(file); }));
    EXPECT_EQ(storedValue().toInt(), 2);
}

TEST_F(StoredPreferences, AGatheredRemovalHidesTheStoredValue) {
    SettingsPreferences(file, Writing::atOnce).setValue(key, 1);
    SettingsPreferences preferences(file, Writing::gathered);
    preferences.remove(key);
    EXPECT_FALSE(preferences.value(key).isValid());
    preferences.flush();
    EXPECT_FALSE(storedValue().isValid());
}

TEST_F(StoredPreferences, WhatIsPendingIsWrittenAtTheEnd) {
    {
        SettingsPreferences preferences(file, Writing::gathered);
        preferences.setValue(key, 3);
    }
    EXPECT_EQ(storedValue().toInt(), 3);
}

TEST_F(StoredPreferences, AFileThatCannotBeReadIsAnEmptyOne) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    QFile broken(file);
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write(QByteArray("\0\xff[[[=\n@ByteArray(", 18));
    broken.close();
    EXPECT_FALSE(storedValue().isValid());
}

TEST_F(StoredPreferences, AreThisUsersAlone) {
    const mode_t before = ::umask(0);
    SettingsPreferences(file, Writing::atOnce).setValue(key, 1);
    ::umask(before);
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(modeOf(QFileInfo(file).path()), 0700U);
}

TEST_F(StoredPreferences, AFullDiskKeepsThemAsTheyWere) {
    SettingsPreferences(file, Writing::atOnce).setValue(key, 1);
    SettingsPreferences preferences(file, Writing::atOnce);
    {
        const tests::FullDisk disk(8);
        preferences.setValue(key, 2);
        EXPECT_EQ(preferences.integer(key, 0), 2);
    }
    EXPECT_EQ(storedValue().toInt(), 1);
    EXPECT_EQ(names(), (QStringList{QStringLiteral(".preferences.ini.lock"),
                                    QStringLiteral("preferences.ini")}));
    preferences.setValue(QStringLiteral("Quillabrae.other"), true);
    EXPECT_EQ(storedValue().toInt(), 2);
}

TEST_F(StoredPreferences, WhatAKilledWriteHasLeftGoesAtTheNextStart) {
    SettingsPreferences(file, Writing::atOnce).setValue(key, 1);
    const QStringList whole = names();
    for (const char* end : {".writing", ".writing.lock", ".writing.AbCdEf", ".writing.whole"}) {
        QFile left(folder.filePath(
            QStringLiteral("deeper/.preferences.ini.0a6a064a-e8b6-44b2-8cc0-74222240a809") +
            QLatin1StringView(end)));
        ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(storedValue().toInt(), 1);
    EXPECT_EQ(names(), whole);
}

TEST_F(StoredPreferences, BehindALinkStayThere) {
    const QString elsewhere = folder.filePath(QStringLiteral("elsewhere.ini"));
    SettingsPreferences(elsewhere, Writing::atOnce).setValue(key, 1);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    ASSERT_TRUE(QFile::link(elsewhere, file));
    SettingsPreferences(file, Writing::atOnce).setValue(key, 2);
    EXPECT_TRUE(QFileInfo(file).isSymLink());
    EXPECT_EQ(SettingsPreferences(elsewhere, Writing::atOnce).integer(key, 0), 2);
}

} // namespace
} // namespace quillabrae::platform
