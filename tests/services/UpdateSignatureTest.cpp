// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/UpdateSignature.h"
#include "support/UpdateSigner.h"

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

using tests::UpdateSigner;

std::string_view view(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// The second test vector of RFC 8032, section 7.1.
struct Vector {
    QByteArray privateKey =
        QByteArray::fromHex("4ccd089b28ff96da9db6c346ec114e0f5b8a319f35aba624da8cf6ed4fb8a6fb");
    QByteArray publicKey =
        QByteArray::fromHex("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c");
    QByteArray message = QByteArray::fromHex("72");
    QByteArray signature = QByteArray::fromHex(
        "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
        "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00");
};

TEST(UpdateSignature, VerifiesTheStandardsOwnExample) {
    const Vector vector;
    const auto key = UpdateKey::fromBase64(QString::fromLatin1(vector.publicKey.toBase64()));
    ASSERT_TRUE(key);
    EXPECT_TRUE(key->verifies(view(vector.message), vector.signature));
    EXPECT_FALSE(key->verifies("s", vector.signature));
    EXPECT_FALSE(key->verifies("", vector.signature));
    EXPECT_EQ(UpdateSigner(vector.privateKey).signature(vector.message), vector.signature);
}

TEST(UpdateSignature, OneBitAnywhereBreaksIt) {
    const UpdateSigner signer;
    const auto key = UpdateKey::fromBase64(signer.publicKeyBase64());
    QByteArray bytes("the package");
    QByteArray signature = signer.signature(bytes);
    ASSERT_TRUE(key->verifies(view(bytes), signature));
    for (QByteArray* changed : {&bytes, &signature})
        for (qsizetype bit = 0; bit < changed->size() * 8; ++bit) {
            const char mask = static_cast<char>(1U << static_cast<unsigned>(bit % 8));
            (*changed)[bit / 8] = static_cast<char>((*changed)[bit / 8] ^ mask);
            EXPECT_FALSE(key->verifies(view(bytes), signature)) << bit;
            (*changed)[bit / 8] = static_cast<char>((*changed)[bit / 8] ^ mask);
        }
    EXPECT_FALSE(key->verifies(view(bytes), signature.left(63)));
    EXPECT_FALSE(key->verifies(view(bytes), signature + '\0'));
    EXPECT_FALSE(key->verifies(view(bytes), {}));
    EXPECT_FALSE(
        UpdateKey::fromBase64(UpdateSigner().publicKeyBase64())->verifies(view(bytes), signature));
}

TEST(UpdateSignature, AKeyIs32BytesInBase64) {
    const QString whole = UpdateSigner().publicKeyBase64();
    EXPECT_TRUE(UpdateKey::fromBase64(whole));
    EXPECT_TRUE(UpdateKey::fromBase64(whole + QLatin1Char('\n')));
    EXPECT_FALSE(UpdateKey::fromBase64({}));
    EXPECT_FALSE(UpdateKey::fromBase64(whole.left(40)));
    EXPECT_FALSE(UpdateKey::fromBase64(QStringLiteral("no base64 at all!")));
    EXPECT_FALSE(UpdateKey::fromBase64(QString::fromLatin1(QByteArray(33, 'a').toBase64())));
}

} // namespace
} // namespace quillabrae::services
