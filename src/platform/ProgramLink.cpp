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

} // namespace quillabrae::platform
