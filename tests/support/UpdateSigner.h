// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace quillabrae::tests {

/// Signs updates with an Ed25519 key of its own.
class UpdateSigner {
public:
    /// A new key.
    UpdateSigner();
    /// The key of a private half, 32 bytes.
    explicit UpdateSigner(const QByteArray& privateKey);
    ~UpdateSigner();
    UpdateSigner(const UpdateSigner&) = delete;
    UpdateSigner& operator=(const UpdateSigner&) = delete;

    QByteArray publicKey() const;
    QString publicKeyBase64() const { return QString::fromLatin1(publicKey().toBase64()); }
    QByteArray signature(const QByteArray& bytes) const;

private:
    struct Key;
    std::unique_ptr<Key> m_key;
};

} // namespace quillabrae::tests
