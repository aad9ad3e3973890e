// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace quillabrae::effects {
namespace {

class OpenAIKeychainServiceTest : public testing::Test {
protected:
    const platform::SecretName name{QStringLiteral("Quillabrae.OpenAI"),
                                    QStringLiteral("OpenAIAPIKey")};
    platform::MemorySecretStore secrets;
    OpenAIKeychainService service{secrets};
};

TEST_F(OpenAIKeychainServiceTest, KeepsTheKeyUnderItsName) {
    EXPECT_FALSE(service.loadAPIKey());
    service.saveAPIKey(QStringLiteral("first"));
    service.saveAPIKey(QStringLiteral("second"));
    EXPECT_EQ(service.loadAPIKey(), QStringLiteral("second"));
    EXPECT_EQ(secrets.load(name), QStringLiteral("second"));
    EXPECT_EQ(secrets.count(), 1U);
}

TEST_F(OpenAIKeychainServiceTest, AnEmptySecretIsNoKey) {
    secrets.save(name, QString());
    EXPECT_FALSE(service.loadAPIKey());
}

TEST_F(OpenAIKeychainServiceTest, RemovingTwiceIsNoError) {
    service.saveAPIKey(QStringLiteral("key"));
    service.removeAPIKey();
    EXPECT_NO_THROW(service.removeAPIKey());
    EXPECT_FALSE(service.loadAPIKey());
}

TEST_F(OpenAIKeychainServiceTest, AStoreThatRefusesHasNoKeyAndTellsWhySavingFails) {
    service.saveAPIKey(QStringLiteral("key"));
    secrets.refusal = QStringLiteral("Locked");
    EXPECT_FALSE(service.loadAPIKey());
    EXPECT_THROW(service.removeAPIKey(), platform::SecretStoreError);
    try {
        service.saveAPIKey(QStringLiteral("other"));
        FAIL();
    } catch (const platform::SecretStoreError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("Locked"));
    }
}

TEST_F(OpenAIKeychainServiceTest, CarriesOutItsOrdersInTheEventLoop) {
    using platform::SecretOutcome;
    std::vector<SecretOutcome> outcomes;
    const auto note = [&](const SecretOutcome& outcome) { outcomes.push_back(outcome); };
    const auto finish = [&] {
        EXPECT_TRUE(outcomes.empty());
        QCoreApplication::processEvents();
        return outcomes.empty() ? SecretOutcome() : std::exchange(outcomes, {}).front();
    };
    auto call = service.beginSaving(QStringLiteral("key"), note);
    EXPECT_FALSE(service.loadAPIKey());
    EXPECT_TRUE(std::holds_alternative<std::optional<QString>>(finish()));
    EXPECT_EQ(service.loadAPIKey(), QStringLiteral("key"));
    call = service.beginLoading(note);
    EXPECT_EQ(std::get<std::optional<QString>>(finish()), QStringLiteral("key"));
    call = service.beginRemoving(note);
    finish();
    EXPECT_FALSE(service.loadAPIKey());

    secrets.refusal = QStringLiteral("Locked");
    call = service.beginLoading(note);
    EXPECT_EQ(std::get<platform::SecretStoreError>(finish()).description(),
              QStringLiteral("Locked"));
    call = service.beginLoading(note);
    call.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(outcomes.empty());
}

} // namespace
} // namespace quillabrae::effects
