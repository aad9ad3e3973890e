// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a HEIF picture within the limits or one CodecError.
#include "FuzzPicture.h"

using namespace quillabrae;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::CheckedPicture picture;
    const fuzz::LibraryMayGiveUp mayGiveUp;
    try {
        codecs::readHeif({data, size}, picture);
    } catch (const codecs::CodecError&) {
    }
    return 0;
}
