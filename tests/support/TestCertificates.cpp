// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestCertificates.h"

#include <QSslConfiguration>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace quillabrae::tests {
namespace {

template <typename T, void (*release)(T*)>
struct Releaser {
    void operator()(T* object) const { release(object); }
};
using Certificate = std::unique_ptr<X509, Releaser<X509, X509_free>>;
using KeyPair = std::unique_ptr<EVP_PKEY, Releaser<EVP_PKEY, EVP_PKEY_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Releaser<X509_EXTENSION, X509_EXTENSION_free>>;

struct BioReleaser {
    void operator()(BIO* bio) const { BIO_free(bio); }
};
using Bio = std::unique_ptr<BIO, BioReleaser>;

void require(bool succeeded) {
    if (!succeeded) throw std::runtime_error("OpenSSL failed to make a test certificate");
}

QByteArray contents(const Bio& bio) {
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &data);
    return {data, static_cast<qsizetype>(size)};
}

QByteArray pem(EVP_PKEY& key) {
    const Bio bio(BIO_new(BIO_s_mem()));
    require(PEM_write_bio_PrivateKey(bio.get(), &key, nullptr, nullptr, 0, nullptr, nullptr) == 1);
    return contents(bio);
}

KeyPair keyFromPem(const QByteArray& text) {
    const Bio bio(BIO_new_mem_buf(text.constData(), static_cast<int>(text.size())));
    return KeyPair(PEM_read_bio_PrivateKey(bio.get(), nullptr, nullptr, nullptr));
}

void extend(X509& certificate, int kind, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, &certificate, &certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    require(extension && X509_add_ext(&certificate, extension.get(), -1) == 1);
}

/// An unsigned certificate whose public key is `key`'s and which is valid for an hour.
Certificate blank(EVP_PKEY& key, const char* name, long serial) {
    Certificate certificate(X509_new());
    require(X509_set_version(certificate.get(), 2) == 1);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    require(X509_set_pubkey(certificate.get(), &key) == 1);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(name), -1, -1, 0);
    return certificate;
}

TlsIdentity identity(X509& certificate, EVP_PKEY& key) {
    const Bio bio(BIO_new(BIO_s_mem()));
    require(PEM_write_bio_X509(bio.get(), &certificate) == 1);
    return {QSslCertificate(contents(bio)), QSslKey(pem(key), QSsl::Ec)};
}

KeyPair newKey() {
    return KeyPair(EVP_EC_gen("P-256"));
}

} // namespace

CertificateAuthority::CertificateAuthority() {
    const KeyPair key = newKey();
    const Certificate certificate = blank(*key, "Test authority", 1);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
    extend(*certificate, NID_basic_constraints, "critical,CA:TRUE");
    extend(*certificate, NID_key_usage, "critical,keyCertSign");
    require(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0);
    m_identity = identity(*certificate, *key);
}

TlsIdentity CertificateAuthority::issue() const {
    const KeyPair key = newKey();
    const KeyPair signer = keyFromPem(m_identity.key.toPem());
    const Certificate certificate = blank(*key, "127.0.0.1", 2);
    const QByteArray authority = m_identity.certificate.toPem();
    const Bio bio(BIO_new_mem_buf(authority.constData(), static_cast<int>(authority.size())));
    const Certificate issuer(PEM_read_bio_X509(bio.get(), nullptr, nullptr, nullptr));
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(issuer.get()));
    extend(*certificate, NID_subject_alt_name, "IP:127.0.0.1");
    require(X509_sign(certificate.get(), signer.get(), EVP_sha256()) > 0);
    return identity(*certificate, *key);
}

TrustedAuthority::TrustedAuthority(const CertificateAuthority& authority)
    : m_before(QSslConfiguration::defaultConfiguration().caCertificates()) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificate(authority.certificate());
    QSslConfiguration::setDefaultConfiguration(configuration);
}

TrustedAuthority::~TrustedAuthority() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(m_before);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace quillabrae::tests
