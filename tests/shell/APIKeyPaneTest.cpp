// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"
#include "platform/SettingsPreferences.h"
#include "shell/ShellTest.h"
#include "shell/TestAccount.h"
#include "shell/controls/SlimBar.h"
#include "shell/settings/APIKeyPane.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace quillabrae::shell {
namespace {

class APIKeyPaneTest : public ShellTest {
protected:
    ~APIKeyPaneTest() override { pane.reset(); }

    void open() {
        pane = std::make_unique<APIKeyPane>(SettingsContext{
            *store, preferences, keychain, [this](const QUrl& url) { page = url; }, *account.none});
        pane->show();
    }
    void openAndWait() {
        open();
        runDeferred();
    }
    QPushButton* button(const QString& title) const {
        for (QPushButton* candidate : pane->findChildren<QPushButton*>())
            if (candidate->text() == title) return candidate;
        return nullptr;
    }
    QPushButton* save() const { return button(QStringLiteral("Save API Key")); }
    QPushButton* remove() const { return button(QStringLiteral("Remove Key")); }
    QLineEdit* field() const { return pane->findChild<QLineEdit*>(); }
    QString text(const char* label) const {
        return pane->findChild<QLabel*>(QString::fromLatin1(label))->text();
    }
    QString connection() const { return text("connectionStatus"); }
    QString keyState() const { return text("keyState"); }
    QString storedStatus() const {
        return preferences.value(QStringLiteral("Quillabrae.openAIConnectionStatus")).toString();
    }
    void enter(const QString& key) {
        QTest::keyClicks(field(), key);
        save()->click();
        runDeferred();
    }

    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    TestAccount account;
    QUrl page;
    std::unique_ptr<APIKeyPane> pane;
};

TEST_F(APIKeyPaneTest, SaysThatThereIsNoKey) {
    openAndWait();
    EXPECT_EQ(connection(), QStringLiteral("Not connected"));
    EXPECT_EQ(keyState(), QStringLiteral("No key saved"));
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("No key saved"));
    EXPECT_FALSE(pane->hasSavedAPIKey());
    EXPECT_EQ(field()->placeholderText(), QStringLiteral("sk-..."));
}

TEST_F(APIKeyPaneTest, SavesTheTrimmedKeyAndClearsTheField) {
    openAndWait();
    enter(QStringLiteral("  sk-first \t"));
    EXPECT_EQ(keychain.loadAPIKey(), QStringLiteral("sk-first"));
    EXPECT_TRUE(field()->text().isEmpty());
    EXPECT_TRUE(pane->hasSavedAPIKey());
    EXPECT_EQ(connection(), QStringLiteral("Connected with BYOK"));
    EXPECT_EQ(storedStatus(), QStringLiteral("Connected with BYOK"));
    EXPECT_EQ(keyState(), QStringLiteral("API key saved in Keychain"));
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("Saved in Keychain"));
    enter(QStringLiteral("sk-second"));
    EXPECT_EQ(keychain.loadAPIKey(), QStringLiteral("sk-second"));
    EXPECT_EQ(secrets.count(), 1U);
}

TEST_F(APIKeyPaneTest, ReturnInTheFieldSaves) {
    openAndWait();
    QTest::keyClicks(field(), QStringLiteral("sk"));
    QTest::keyClick(field(), Qt::Key_Return);
    runDeferred();
    EXPECT_EQ(keychain.loadAPIKey(), QStringLiteral("sk"));
}

TEST_F(APIKeyPaneTest, BlanksSaveNothing) {
    openAndWait();
    QTest::keyClicks(field(), QStringLiteral("   "));
    EXPECT_FALSE(save()->isEnabled());
    QTest::keyClick(field(), Qt::Key_Return);
    runDeferred();
    EXPECT_EQ(secrets.count(), 0U);
    EXPECT_EQ(connection(), QStringLiteral("Not connected"));
}

TEST_F(APIKeyPaneTest, RemovesTheKey) {
    keychain.saveAPIKey(QStringLiteral("sk"));
    openAndWait();
    EXPECT_EQ(keyState(), QStringLiteral("API key saved in Keychain"));
    remove()->click();
    runDeferred();
    EXPECT_FALSE(keychain.loadAPIKey());
    EXPECT_EQ(storedStatus(), QStringLiteral("Not connected"));
    EXPECT_EQ(keyState(), QStringLiteral("No key saved"));
    // There being none is no error.
    remove()->click();
    runDeferred();
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("No key saved"));
}

TEST_F(APIKeyPaneTest, MasksWhatIsTypedUnlessItIsToBeShown) {
    openAndWait();
    QTest::keyClicks(field(), QStringLiteral("sk-canary"));
    EXPECT_EQ(field()->echoMode(), QLineEdit::Password);
    EXPECT_FALSE(field()->displayText().contains(QStringLiteral("canary")));
    pane->findChild<QCheckBox*>()->click();
    EXPECT_TRUE(pane->isShowingAPIKey());
    EXPECT_EQ(field()->displayText(), QStringLiteral("sk-canary"));
}

TEST_F(APIKeyPaneTest, NoUndoBringsASavedKeyBack) {
    openAndWait();
    pane->findChild<QCheckBox*>()->click();
    enter(QStringLiteral("sk-canary"));
    QTest::keyClick(field(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(field()->text().isEmpty());
}

TEST_F(APIKeyPaneTest, OpensTheProvidersPage) {
    openAndWait();
    button(QStringLiteral("Get API Key..."))->click();
    EXPECT_EQ(page, QUrl(QStringLiteral("https://platform.openai.com/api-keys")));
}

TEST_F(APIKeyPaneTest, TellsWhyAKeyCouldNotBeSavedAndKeepsWhatWasTyped) {
    openAndWait();
    secrets.refusal = QStringLiteral("The keyring is locked.");
    enter(QStringLiteral("sk"));
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("The keyring is locked."));
    EXPECT_EQ(field()->text(), QStringLiteral("sk"));
    EXPECT_EQ(connection(), QStringLiteral("Not connected"));
    EXPECT_TRUE(save()->isEnabled());
    secrets.refusal.reset();
    save()->click();
    runDeferred();
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("Saved in Keychain"));
}

TEST_F(APIKeyPaneTest, TellsWhyAKeyCouldNotBeRemoved) {
    keychain.saveAPIKey(QStringLiteral("sk"));
    openAndWait();
    secrets.refusal = QStringLiteral("Denied.");
    remove()->click();
    runDeferred();
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("Denied."));
    EXPECT_EQ(keyState(), QStringLiteral("API key saved in Keychain"));
}

TEST_F(APIKeyPaneTest, AStoreThatDoesNotAnswerHasNoKey) {
    keychain.saveAPIKey(QStringLiteral("sk"));
    secrets.refusal = QStringLiteral("No secret service.");
    openAndWait();
    EXPECT_EQ(connection(), QStringLiteral("Not connected"));
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("No secret service."));
}

TEST_F(APIKeyPaneTest, StaysAliveWhileTheStoreTakesItsTime) {
    openAndWait();
    secrets.isSlow = true;
    enter(QStringLiteral("sk"));
    EXPECT_FALSE(save()->isEnabled());
    EXPECT_FALSE(remove()->isEnabled());
    // A second Return begins nothing more.
    QTest::keyClick(field(), Qt::Key_Return);
    auto* bar = pane->findChild<SlimBar*>();
    EXPECT_FALSE(bar->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->isVisible(); }, 2000));
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("Waiting for the keychain..."));
    secrets.isSlow = false;
    runDeferred();
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(pane->keyStatusMessage(), QStringLiteral("Saved in Keychain"));
    EXPECT_EQ(keychain.loadAPIKey(), QStringLiteral("sk"));
}

TEST_F(APIKeyPaneTest, GoesWhileTheStoreStillOwesItAnAnswer) {
    secrets.isSlow = true;
    open();
    pane.reset();
    secrets.isSlow = false;
    runDeferred();
    EXPECT_TRUE(storedStatus().isEmpty());
}

TEST_F(APIKeyPaneTest, TheStatusOutlivesTheProgramAndTheKeyIsInNoPreference) {
    const QString path = folder.filePath(QStringLiteral("preferences.conf"));
    {
        platform::SettingsPreferences stored(path,
                                             platform::SettingsPreferences::Writing::gathered);
        pane = std::make_unique<APIKeyPane>(
            SettingsContext{*store, stored, keychain, [](const QUrl&) {}, *account.none});
        runDeferred();
        enter(QStringLiteral("sk-canary"));
        pane.reset();
    }
    platform::SettingsPreferences stored(path, platform::SettingsPreferences::Writing::gathered);
    secrets.isSlow = true;
    pane = std::make_unique<APIKeyPane>(
        SettingsContext{*store, stored, keychain, [](const QUrl&) {}, *account.none});
    EXPECT_EQ(connection(), QStringLiteral("Connected with BYOK"));
    EXPECT_EQ(keyState(), QStringLiteral("API key saved in Keychain"));
    pane.reset();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    EXPECT_TRUE(written.contains("Connected with BYOK"));
    EXPECT_FALSE(written.contains("canary"));
}

} // namespace
} // namespace quillabrae::shell
