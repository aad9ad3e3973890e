// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Base64.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace quillabrae::model {
namespace {

QByteArray randomBytes(std::mt19937& random, qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes) byte = static_cast<char>(random() & 0xff);
    return bytes;
}

std::span<const std::uint8_t> spanOf(const QByteArray& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

QByteArray encoded(const QByteArray& bytes, base64::Method method) {
    const auto length = base64::encodedLength(static_cast<std::size_t>(bytes.size()));
    // A buffer of exactly this length, so that a write past its end shows under the sanitizer.
    std::vector<char> text(length);
    base64::encode(spanOf(bytes), text.data(), method);
    return {text.data(), static_cast<qsizetype>(length)};
}

std::optional<QByteArray> decoded(const QByteArray& text, base64::Method method) {
    const std::string_view view(text.constData(), static_cast<std::size_t>(text.size()));
    const auto length = base64::decodedLength(view);
    if (!length) return std::nullopt;
    std::vector<std::uint8_t> bytes(*length);
    if (!base64::decode(view, bytes.data(), method)) return std::nullopt;
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()));
}

class Base64 : public testing::TestWithParam<base64::Method> {};

INSTANTIATE_TEST_SUITE_P(Methods, Base64,
                         testing::Values(base64::Method::plain, base64::Method::fastest));

TEST_P(Base64, AgreesWithTheLibraryForEveryLength) {
    std::mt19937 random(1);
    for (qsizetype size = 0; size < 500; ++size) {
        const QByteArray bytes = randomBytes(random, size);
        EXPECT_EQ(encoded(bytes, GetParam()), bytes.toBase64());
        EXPECT_EQ(decoded(bytes.toBase64(), GetParam()), bytes);
    }
}

TEST_P(Base64, AnyOtherCharacterAnywhereIsRefused) {
    std::mt19937 random(2);
    const QByteArray text = randomBytes(random, 150).toBase64();
    const QByteArray letters("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
    for (qsizetype at = 0; at < text.size(); ++at) {
        for (int character = 0; character < 256; ++character) {
            QByteArray changed = text;
            changed[at] = static_cast<char>(character);
            const bool isPadding = character == '=' && at == text.size() - 1;
            const bool isValid = letters.contains(static_cast<char>(character)) || isPadding;
            EXPECT_EQ(decoded(changed, GetParam()).has_value(), isValid) << at << " " << character;
        }
    }
}

TEST_P(Base64, PaddingBelongsAtTheEndAndMakesWholeQuadruples) {
    for (const char* text : {"A", "AA", "AAA", "=", "==", "===", "====", "A===", "AA=A", "=AAA",
                             "AA==AAAA", "AAAAA", "AA\n=", "AA= "})
        EXPECT_EQ(decoded(text, GetParam()), std::nullopt) << text;
    EXPECT_EQ(decoded("", GetParam()), QByteArray());
}

} // namespace
} // namespace quillabrae::model
