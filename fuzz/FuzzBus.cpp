// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever a program on the session bus asks for, only what has been checked is left of it. Each
// line is an argument: the first the name of an action, the second the desktop's token, the others
// what is to be opened.
#include "FuzzInput.h"
#include "platform/ApplicationService.h"
#include "platform/ProgramLink.h"

using namespace quillabrae;
using platform::ApplicationService;
using platform::StartRequest;

namespace {

void checkRequest(const StartRequest& request) {
    for (const QUrl& file : request.files) {
        fuzz::require(file.isLocalFile());
        fuzz::require(file.toLocalFile().startsWith(QLatin1Char('/')));
    }
    for (const QUrl& link : request.links) fuzz::require(platform::isProgramLink(link));
    fuzz::require(request.action.size() <= platform::maximumActionLength);
    fuzz::require(platform::checkedToken(request.activationToken) == request.activationToken);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QStringList lines =
        QString::fromUtf8(fuzz::bytesOf(data, size)).split(QLatin1Char('\n'), Qt::KeepEmptyParts);
    const QString action = lines.takeFirst();
    QVariantMap platformData;
    if (!lines.isEmpty()) {
        const QString token = lines.takeFirst();
        platformData.insert(QStringLiteral("activation-token"), token);
        platformData.insert(QStringLiteral("desktop-startup-id"), token.toUtf8());
    }
    checkRequest(ApplicationService::activation(platformData));
    checkRequest(ApplicationService::actionCall(action, platformData));
    if (const auto opening = ApplicationService::opening(lines, platformData))
        checkRequest(*opening);
    return 0;
}
