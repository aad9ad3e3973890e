// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SecureRandom.h"
#include "services/ScriptedBrowser.h"
#include "services/SignInRequest.h"

#include <gtest/gtest.h>

#include <set>

namespace quillabrae::services {
namespace {

const QString state = QStringLiteral("the-state_of-it");

QUrl callback(const char* text) {
    return QUrl::fromEncoded(text, QUrl::StrictMode);
}

TEST(Base64Url, HasNothingThatAnAddressMustEscape) {
    EXPECT_EQ(base64Url(QByteArray("\xfb\xff\xfe", 3)), QStringLiteral("-__-"));
    EXPECT_EQ(base64Url(QByteArray("a")), QStringLiteral("YQ"));
    EXPECT_EQ(base64Url(QByteArray("ab")), QStringLiteral("YWI"));
    EXPECT_EQ(base64Url(QByteArray()), QString());
}

TEST(SecureRandom, GivesAsManyBytesAsAskedAndNeverTheSame) {
    std::set<QByteArray> seen;
    for (int i = 0; i < 100; ++i) {
        const auto bytes = platform::secureRandomData(32);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(bytes->size(), 32);
        EXPECT_TRUE(seen.insert(*bytes).second);
    }
    EXPECT_EQ(platform::secureRandomData(1'000'000)->size(), 1'000'000);
    EXPECT_EQ(platform::secureRandomData(0), QByteArray());
}

TEST(SignInRequests, AreMadeOfTwoDrawsOfThirtyTwoBytes) {
    std::vector<qsizetype> counts;
    const auto request = SignInRequest::make([&](qsizetype count) {
        counts.push_back(count);
        return std::optional(QByteArray(count, static_cast<char>('a' + counts.size())));
    });
    EXPECT_EQ(counts, (std::vector<qsizetype>{32, 32}));
    ASSERT_TRUE(request);
    EXPECT_EQ(request->state, base64Url(QByteArray(32, 'b')));
    EXPECT_EQ(request->codeVerifier, base64Url(QByteArray(32, 'c')));
    EXPECT_EQ(request->codeVerifier.size(), 43);
}

TEST(SignInRequests, NeedRandomnessForBoth) {
    for (const int failing : {1, 2}) {
        int draw = 0;
        EXPECT_FALSE(SignInRequest::make([&](qsizetype count) -> std::optional<QByteArray> {
            if (++draw == failing) return std::nullopt;
            return QByteArray(count, 'x');
        }));
    }
}

TEST(SignInRequests, TheChallengeIsTheHashOfTheVerifiersText) {
    // RFC 7636, appendix B.
    const SignInRequest request{state,
                                QStringLiteral("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk")};
    EXPECT_EQ(request.codeChallenge(),
              QStringLiteral("E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM"));
}

TEST(SignInRequests, ThePageGoesOnToARelativeAddressWithStateAndChallenge) {
    const WebService service(QUrl(QStringLiteral("https://example.org:8443")));
    const SignInRequest request{state, QStringLiteral("verifier")};
    const QUrl page = request.page(service);
    EXPECT_EQ(page.toEncoded(),
              "https://example.org:8443/sign-in?next=%2Fapp-auth%3Fstate%3D"
              "the-state_of-it%26code_challenge%3D" +
                  request.codeChallenge().toLatin1());
    EXPECT_FALSE(page.toEncoded().contains("verifier"));
    ScriptedBrowser browser;
    browser.open(page);
    EXPECT_EQ(browser.state(), state);
    EXPECT_EQ(browser.asked(QStringLiteral("code_challenge")), request.codeChallenge());
    EXPECT_TRUE(request.page(WebService(QUrl())).isEmpty());
}

TEST(Callbacks, GiveTheCodeOfTheSignInThatWasAsked) {
    const std::pair<const char*, const char*> expected[] = {
        {"quillabrae://auth/callback?code=abc&state=the-state_of-it", "abc"},
        {"quillabrae://auth/callback?state=the-state_of-it&code=abc", "abc"},
        {"quillabrae://auth/callback?state=the-state_of-it&code=a%2Bb%26c%3D%25", "a+b&c=%"},
        {"quillabrae://auth/callback?state=the%2Dstate_of-it&code=a+b&x=y", "a+b"},
        {"QUILLABRAE://AUTH/callback?state=the-state_of-it&code=abc", "abc"},
        {"quillabrae://auth/callback?state=the-state_of-it&code=abc#_", "abc"},
    };
    for (const auto& [link, code] : expected)
        EXPECT_EQ(codeFromCallback(callback(link), state), QString::fromLatin1(code)) << link;
}

TEST(Callbacks, OtherLinksGiveNone) {
    for (const char* link :
         {"",
          "quillabrae:",
          "quillabrae://auth/callback",
          "quillabrae://auth/callback?",
          "quillabrae://auth/callback?code=abc",
          "quillabrae://auth/callback?state=the-state_of-it",
          "quillabrae://auth/callback?code=&state=the-state_of-it",
          "quillabrae://auth/callback?code&state=the-state_of-it",
          "quillabrae://auth/callback?code=abc&state=",
          "quillabrae://auth/callback?code=abc&state=another",
          "quillabrae://auth/callback?code=abc&state=THE-STATE_OF-IT",
          "quillabrae://auth/callback?code=abc&state=the-state_of-it%00",
          "quillabrae://auth/callback?code=abc&state=the-state_of-it&state=the-state_of-it",
          "quillabrae://auth/callback?code=abc&code=def&state=the-state_of-it",
          "quillabrae://auth/callback/?code=abc&state=the-state_of-it",
          "quillabrae://auth/Callback?code=abc&state=the-state_of-it",
          "quillabrae://auth//callback?code=abc&state=the-state_of-it",
          "quillabrae://auth?code=abc&state=the-state_of-it",
          "quillabrae://auth:1/callback?code=abc&state=the-state_of-it",
          "quillabrae://me@auth/callback?code=abc&state=the-state_of-it",
          "quillabrae://auth.example.org/callback?code=abc&state=the-state_of-it",
          "quillabrae:/auth/callback?code=abc&state=the-state_of-it",
          "quillabrae:auth/callback?code=abc&state=the-state_of-it",
          "https://auth/callback?code=abc&state=the-state_of-it",
          "quillabraes://auth/callback?code=abc&state=the-state_of-it",
          "quillabrae://auth/callback#code=abc&state=the-state_of-it"})
        EXPECT_FALSE(codeFromCallback(callback(link), state)) << link;
}

TEST(Callbacks, AnEmptyStateIsNoState) {
    EXPECT_FALSE(codeFromCallback(callback("quillabrae://auth/callback?code=a&state="), QString()));
}

TEST(Callbacks, ALinkOfAnyLengthIsNone) {
    const QByteArray start = "quillabrae://auth/callback?state=the-state_of-it&code=";
    EXPECT_TRUE(codeFromCallback(QUrl::fromEncoded(start + QByteArray(4'000, 'c')), state));
    EXPECT_FALSE(codeFromCallback(QUrl::fromEncoded(start + QByteArray(10'000, 'c')), state));
}

} // namespace
} // namespace quillabrae::services
