// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProgramLink.h"

namespace quillabrae::platform {

bool isMeantAsProgramLink(QStringView argument) {
    return argument.startsWith(QString(programLinkScheme + u':'), Qt::CaseInsensitive);
}

bool isProgramLink(const QUrl& url) {
    return url.isValid() && url.scheme() == programLinkScheme &&
           url.toEncoded().size() <= maximumProgramLink;
}

QList<QUrl> linksFromArguments(const QStringList& arguments) {
    QList<QUrl> links;
    for (const QString& argument : arguments) {
        if (!isMeantAsProgramLink(argument) || argument.size() > maximumProgramLink) continue;
        if (const QUrl link(argument, QUrl::StrictMode); isProgramLink(link)) links.append(link);
    }
    return links;
}

} // namespace quillabrae::platform
