// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/UpdateSignature.h"

#include <openssl/evp.h>

#include <memory>

namespace quillabrae::services {
namespace {

constexpr qsizetype keyBytes = 32;

struct Releaser {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

const unsigned char* unsignedBytes(const char* bytes) {
    return reinterpret_cast<const unsigned char*>(bytes);
}

} // namespace

std::optional<QByteArray> decodedBase64(const QString& text, qsizetype size) {
    const auto decoded = QByteArray::fromBase64Encoding(text.trimmed().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || (*decoded).size() != size) return std::nullopt;
    return *decoded;
}

std::optional<UpdateKey> UpdateKey::fromBase64(const QString& text) {
    const auto bytes = decodedBase64(text, keyBytes);
    if (!bytes) return std::nullopt;
    UpdateKey key;
    key.m_bytes = *bytes;
    return key;
}

bool UpdateKey::verifies(std::string_view bytes, const QByteArray& signature) const {
    const std::unique_ptr<EVP_PKEY, Releaser> key(EVP_PKEY_new_raw_public_key(
        EVP_PKEY_ED25519, nullptr, unsignedBytes(m_bytes.constData()), keyBytes));
    const std::unique_ptr<EVP_MD_CTX, Releaser> context(EVP_MD_CTX_new());
    if (!key || !context ||
        EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
        return false;
    return EVP_DigestVerify(context.get(), unsignedBytes(signature.constData()),
                            static_cast<std::size_t>(signature.size()), unsignedBytes(bytes.data()),
                            bytes.size()) == 1;
}

} // namespace quillabrae::services
