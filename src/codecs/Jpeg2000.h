// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "codecs/Codecs.h"

#include <openjpeg.h>

#include <memory>

namespace quillabrae::codecs {

/// The library's handles, released at the end. Two of them are the same type to the compiler.
template <typename T, void (*release)(T*)>
struct Jpeg2000Release {
    void operator()(T* thing) const { release(thing); }
};
using Jpeg2000Codec = std::unique_ptr<opj_codec_t, Jpeg2000Release<opj_codec_t, opj_destroy_codec>>;
using Jpeg2000Image = std::unique_ptr<opj_image_t, Jpeg2000Release<opj_image_t, opj_image_destroy>>;
using Jpeg2000Stream =
    std::unique_ptr<opj_stream_t, Jpeg2000Release<opj_stream_t, opj_stream_destroy>>;

} // namespace quillabrae::codecs
