// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are an SVG with a size, which can be drawn small, or one CodecError.
#include "FuzzPicture.h"

using namespace quillabrae;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int side = 24;
    fuzz::CheckedPicture picture;
    const fuzz::LibraryMayGiveUp mayGiveUp;
    try {
        const codecs::DrawingSize drawing = codecs::sizeOfSvg({data, size});
        fuzz::require(drawing.width > 0.0 && drawing.height > 0.0);
        codecs::drawSvg({data, size}, side, side, picture);
    } catch (const codecs::CodecError&) {
    }
    return 0;
}
