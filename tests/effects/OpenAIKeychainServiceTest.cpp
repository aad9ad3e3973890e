// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace quillabrae::effects
