// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"
#include "replay/Arguments.h"

#include <span>

namespace quillabrae::replay {

class Session;

/// A picture that a script can save or look at: a value of "of" and where it comes from.
struct PictureSource {
    const char* name;
    /// Throws ScriptError where there is no such picture now.
    raster::RasterImage (*picture)(Session&, const Arguments&);
};

// One family a source file; a new family is declared here and named in `pictureNamedBy`.
std::span<const PictureSource> projectPictures();
std::span<const PictureSource> canvasPictures();

/// The picture that a line's "of" names.
raster::RasterImage pictureNamedBy(Session& session, const Arguments& arguments);

} // namespace quillabrae::replay
