// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/UpdateSigner.h"

#include <openssl/evp.h>

#include <stdexcept>

namespace quillabrae::tests {
namespace {

const unsigned char* input(const QByteArray& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

unsigned char* output(QByteArray& bytes) {
    return reinterpret_cast<unsigned char*>(bytes.data());
}

void require(bool succeeded) {
    if (!succeeded) throw std::runtime_error("OpenSSL failed to sign an update");
}

} // namespace

struct UpdateSigner::Key {
    explicit Key(EVP_PKEY* value) : pair(value) { require(value); }
    ~Key() { EVP_PKEY_free(pair); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    EVP_PKEY* pair;
};

UpdateSigner::UpdateSigner()
    : m_key(std::make_unique<Key>(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"))) {}

UpdateSigner::UpdateSigner(const QByteArray& privateKey)
    : m_key(std::make_unique<Key>(
          EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, input(privateKey),
                                       static_cast<std::size_t>(privateKey.size())))) {}

UpdateSigner::~UpdateSigner() = default;

QByteArray UpdateSigner::publicKey() const {
    QByteArray key(32, 0);
    std::size_t size = 32;
    require(EVP_PKEY_get_raw_public_key(m_key->pair, output(key), &size) == 1);
    return key;
}

QByteArray UpdateSigner::signature(const QByteArray& bytes) const {
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                          &EVP_MD_CTX_free);
    QByteArray signature(64, 0);
    std::size_t size = 64;
    require(EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, m_key->pair) == 1);
    require(EVP_DigestSign(context.get(), output(signature), &size, input(bytes),
                           static_cast<std::size_t>(bytes.size())) == 1);
    return signature;
}

} // namespace quillabrae::tests
