// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <vector>

namespace quillabrae::effects {

struct MultipartFile {
    QString name;
    QString filename;
    QString mimeType;
    QByteArray data;
};

/// The body of a multipart/form-data request (RFC 7578): the fields, then the files, each under a
/// line of the boundary. Names and file names are the caller's own constants; they are not escaped.
QByteArray multipartBody(const QString& boundary, const QMap<QString, QString>& fields,
                         const std::vector<MultipartFile>& files);

} // namespace quillabrae::effects
