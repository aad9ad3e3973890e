// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <string_view>

namespace quillabrae::services {

constexpr qsizetype updateSignatureBytes = 64;

/// The bytes of a text in base64, white space around it aside; nothing unless they are that many.
std::optional<QByteArray> decodedBase64(const QString& text, qsizetype size);

/// The public half of the Ed25519 key (RFC 8032) that updates are signed with.
class UpdateKey {
public:
    /// Nothing for what is not 32 bytes in base64.
    static std::optional<UpdateKey> fromBase64(const QString& text);

    /// Whether `signature` is this key's over exactly these bytes.
    bool verifies(std::string_view bytes, const QByteArray& signature) const;

private:
    QByteArray m_bytes;
};

} // namespace quillabrae::services
