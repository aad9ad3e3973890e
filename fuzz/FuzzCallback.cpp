// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes that another program sends are a message with files and links or none, and any link
// among them brings back a code for the state that was asked or nothing. Bytes that begin with no
// message are taken for a link by themselves, and as an argument of the program.
#include "FuzzInput.h"
#include "platform/HandOver.h"
#include "platform/ProgramLink.h"
#include "platform/StartRequest.h"
#include "services/SignInRequest.h"

using namespace quillabrae;
using fuzz::require;

namespace {

void checkCallback(const QUrl& link) {
    const QString state = QStringLiteral("state");
    const auto code = services::codeFromCallback(link, state);
    if (!code) return;
    require(!code->isEmpty() && platform::isProgramLink(link));
    require(link.toEncoded().contains("state") || link.toEncoded().contains('%'));
    require(!services::codeFromCallback(link, QStringLiteral("another")));
}

void checkRequest(const platform::StartRequest& request) {
    for (const QUrl& file : request.files) require(file.isLocalFile());
    for (const QUrl& link : request.links) {
        require(platform::isProgramLink(link));
        checkCallback(link);
    }
}

void checkMessage(const QByteArray& bytes) {
    namespace HandOver = platform::HandOver;
    const platform::StartRequest request = HandOver::read(bytes).request;
    checkRequest(request);
    // Bytes that are no UTF-8 may be others once they have gone through a URL, but then they stay.
    const platform::StartRequest handedOver = HandOver::read(HandOver::message(request)).request;
    checkRequest(handedOver);
    require(handedOver.links.size() == request.links.size());
    require(HandOver::read(HandOver::message(handedOver)).request == handedOver);
}

void checkArgument(const QString& argument) {
    const auto urls = platform::urlsFromArguments({argument}, QStringLiteral("/"));
    const platform::StartRequest request = platform::sortedRequest(urls);
    require(request.files.size() + request.links.size() <= 1);
    if (platform::isMeantAsProgramLink(argument)) require(request.files.isEmpty());
    checkRequest(request);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = fuzz::bytesOf(data, size);
    checkMessage(bytes);
    checkMessage(platform::HandOver::message({.links = {QUrl::fromEncoded(bytes)}}));
    checkCallback(QUrl::fromEncoded(bytes, QUrl::StrictMode));
    checkCallback(QUrl::fromEncoded(bytes));
    checkArgument(QString::fromUtf8(bytes));
    return 0;
}
