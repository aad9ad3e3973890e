// SPDX-License-Identifier: GPL-3.0-or-later
// What a test's HTTPS server shows and whom to trust for it: writes authority.pem, a certificate
// authority that exists for this run alone, and server.pem, the certificate and the key of a server
// on 127.0.0.1, into the folder that it is given. With a package as well, it signs that with a key
// of this run: update-key.txt is the public half and update-signature.txt the signature, in base64.
#include "support/TestCertificates.h"
#include "support/UpdateSigner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>

namespace {

bool write(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

bool writeAuthority(const QDir& folder) {
    const quillabrae::tests::CertificateAuthority authority;
    const quillabrae::tests::TlsIdentity server = authority.issue();
    return write(folder.filePath(QStringLiteral("authority.pem")),
                 authority.certificate().toPem()) &&
           write(folder.filePath(QStringLiteral("server.pem")),
                 server.certificate.toPem() + server.key.toPem());
}

bool writeSignature(const QDir& folder, const QString& package) {
    QFile file(package);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const quillabrae::tests::UpdateSigner signer;
    return write(folder.filePath(QStringLiteral("update-key.txt")),
                 signer.publicKey().toBase64()) &&
           write(folder.filePath(QStringLiteral("update-signature.txt")),
                 signer.signature(file.readAll()).toBase64());
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QDir folder(arguments.value(1));
    const QString package = arguments.value(2);
    if (writeAuthority(folder) && (package.isEmpty() || writeSignature(folder, package)))
        return EXIT_SUCCESS;
    std::fprintf(stderr, "cannot write into %s\n", qPrintable(folder.path()));
    return EXIT_FAILURE;
}
