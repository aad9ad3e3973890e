// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a JPEG 2000 picture within the limits or one CodecError.
#include "FuzzPicture.h"

using namespace quillabrae;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::CheckedPicture picture;
    const fuzz::LibraryMayGiveUp mayGiveUp;
    try {
        codecs::readJpeg2000({data, size}, picture);
    } catch (const codecs::CodecError&) {
    }
    return 0;
}
