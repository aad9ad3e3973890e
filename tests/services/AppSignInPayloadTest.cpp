// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppSignInPayload.h"

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

TEST(AppSignInPayloads, HoldATokenAnAddressAndPerhapsAName) {
    EXPECT_EQ(appSignInPayload(
                  R"({"token":"a.b-c_d~e+f/g=","name":"Zoë","email":"z@example.org","more":[1]})"),
              (AppSignInPayload{.name = QStringLiteral("Zoë"),
                                .email = QStringLiteral("z@example.org"),
                                .token = QStringLiteral("a.b-c_d~e+f/g=")}));
    for (const char* json :
         {R"({"token":"t","email":"e"})", R"({"token":"t","name":null,"email":"e"})"}) {
        const auto payload = appSignInPayload(json);
        ASSERT_TRUE(payload) << json;
        EXPECT_FALSE(payload->name) << json;
    }
}

TEST(AppSignInPayloads, OtherAnswersAreNone) {
    for (const char* json :
         {"", "{", "[]", "null", "<html></html>", R"({"email":"e"})", R"({"token":"t"})",
          R"({"token":null,"email":"e"})", R"({"token":5,"email":"e"})",
          R"({"token":"t","email":null})", R"({"token":"t","email":"e","name":7})",
          R"({"token":"t","email":"e"}x)", R"({"token":"t","token":"u","email":"e"})"})
        EXPECT_FALSE(appSignInPayload(json)) << json;
}

TEST(AppSignInPayloads, ATokenThatWouldBreakAHeaderIsNone) {
    for (const char* token : {"", "a b", "a\\r\\nX: y", "a\\u0000", "\\u00e9", "\\u007f"})
        EXPECT_FALSE(appSignInPayload(QByteArray(R"({"email":"e","token":")") + token + "\"}"))
            << token;
}

} // namespace
} // namespace quillabrae::services
