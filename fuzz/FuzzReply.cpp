// SPDX-License-Identifier: GPL-3.0-or-later
// Any answer of a service to a picture that was sent to it, to a sign-in or to feedback is one that
// the user can be told of. The first byte chooses the status.
#include "FuzzInput.h"
#include "effects/OpenAIImageEditService.h"
#include "services/AppSignInPayload.h"

#include <array>

using namespace quillabrae;

namespace {

void checkImageEdit(const platform::HttpReply& reply) {
    const auto outcome = effects::imageEditOutcome(reply);
    if (const auto* picture = std::get_if<QByteArray>(&outcome)) {
        fuzz::require(reply.status >= 200 && reply.status <= 299);
        // Base64 has four letters for three bytes.
        fuzz::require(picture->size() <= reply.body.size());
    }
}

void checkSignIn(const QByteArray& json) {
    const auto payload = services::appSignInPayload(json);
    if (!payload) return;
    for (const QChar letter : payload->token)
        fuzz::require(letter > QLatin1Char(' ') && letter < QChar(0x7f));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    constexpr std::array statuses{200, 201, 400, 401, 429, 500, 0};
    platform::HttpReply reply;
    reply.status = statuses[data[0] % statuses.size()];
    reply.body = fuzz::bytesOf(data + 1, size - 1);
    checkImageEdit(reply);
    checkSignIn(reply.body);
    return 0;
}
