// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/MultipartBody.h"

namespace quillabrae::effects {

QByteArray multipartBody(const QString& boundary, const QMap<QString, QString>& fields,
                         const std::vector<MultipartFile>& files) {
    constexpr qsizetype roomForHeaders = 512;
    qsizetype size = roomForHeaders;
    for (const QString& value : fields) size += roomForHeaders + value.size() * 3;
    for (const MultipartFile& file : files) size += roomForHeaders + file.data.size();

    const QByteArray delimiter = "--" + boundary.toUtf8();
    QByteArray body;
    body.reserve(size);
    const auto beginPart = [&](const QString& name) {
        body += delimiter + "\r\nContent-Disposition: form-data; name=\"" + name.toUtf8() + '"';
    };
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        beginPart(field.key());
        body += "\r\n\r\n" + field.value().toUtf8() + "\r\n";
    }
    for (const MultipartFile& file : files) {
        beginPart(file.name);
        body += "; filename=\"" + file.filename.toUtf8() +
                "\"\r\nContent-Type: " + file.mimeType.toUtf8() + "\r\n\r\n";
        body += file.data;
        body += "\r\n";
    }
    body += delimiter + "--\r\n";
    return body;
}

} // namespace quillabrae::effects
