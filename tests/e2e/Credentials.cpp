// SPDX-License-Identifier: GPL-3.0-or-later
// What a test's HTTPS server shows and whom to trust for it: writes authority.pem, a certificate
// authority that exists for this run alone, and server.pem, the certificate and the key of a server
// on 127.0.0.1, into the folder that it is given.
#include "support/TestCertificates.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>

namespace {

bool write(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1));
    const quillabrae::tests::CertificateAuthority authority;
    const quillabrae::tests::TlsIdentity server = authority.issue();
    if (write(folder.filePath(QStringLiteral("authority.pem")), authority.certificate().toPem()) &&
        write(folder.filePath(QStringLiteral("server.pem")),
              server.certificate.toPem() + server.key.toPem()))
        return EXIT_SUCCESS;
    std::fprintf(stderr, "cannot write into %s\n", qPrintable(folder.path()));
    return EXIT_FAILURE;
}
