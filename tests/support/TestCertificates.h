// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QSslCertificate>
#include <QSslKey>

namespace quillabrae::tests {

/// What a server shows and signs with.
struct TlsIdentity {
    QSslCertificate certificate;
    QSslKey key;
};

/// A certificate authority that exists for one test and that nobody trusts unless told to.
class CertificateAuthority {
public:
    CertificateAuthority();

    const QSslCertificate& certificate() const { return m_identity.certificate; }
    /// A certificate of this authority for 127.0.0.1, valid for an hour.
    TlsIdentity issue() const;

private:
    TlsIdentity m_identity;
};

/// Has this process trust an authority, beside those of the system, while this object lives.
class TrustedAuthority {
public:
    explicit TrustedAuthority(const CertificateAuthority& authority);
    ~TrustedAuthority();
    TrustedAuthority(const TrustedAuthority&) = delete;
    TrustedAuthority& operator=(const TrustedAuthority&) = delete;

private:
    QList<QSslCertificate> m_before;
};

} // namespace quillabrae::tests
