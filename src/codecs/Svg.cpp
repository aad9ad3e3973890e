// SPDX-License-Identifier: GPL-3.0-or-later
#include "codecs/Codecs.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace quillabrae::codecs {
namespace {

struct Release {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(GError* error) const { g_error_free(error); }
};
using Handle = std::unique_ptr<RsvgHandle, Release>;
using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Drawing = std::unique_ptr<cairo_t, Release>;
using Error = std::unique_ptr<GError, Release>;

[[noreturn]] void fail(GError* error) {
    const Error owned(error);
    throw CodecError(owned ? owned->message : "the drawing is broken");
}

/// A document without an address: there is nothing its references to files could be relative to,
/// and the library loads none.
Handle documentIn(Bytes file) {
    constexpr double dotsPerInch = 96.0;
    GError* error = nullptr;
    Handle handle(rsvg_handle_new_from_data(file.data(), file.size(), &error));
    if (!handle) fail(error);
    rsvg_handle_set_dpi(handle.get(), dotsPerInch);
    return handle;
}

DrawingSize sizeOf(RsvgHandle* document) {
    DrawingSize size;
    if (rsvg_handle_get_intrinsic_size_in_pixels(document, &size.width, &size.height) != 0)
        return size;
    RsvgRectangle viewBox{};
    gboolean hasViewBox = 0;
    rsvg_handle_get_intrinsic_dimensions(document, nullptr, nullptr, nullptr, nullptr, &hasViewBox,
                                         &viewBox);
    if (hasViewBox != 0) return {viewBox.width, viewBox.height};
    RsvgRectangle extents{};
    GError* error = nullptr;
    if (rsvg_handle_get_geometry_for_element(document, nullptr, &extents, nullptr, &error) == 0)
        fail(error);
    return {extents.width, extents.height};
}

struct Target {
    std::span<std::uint8_t> pixels;
    int width;
    int height;
};

/// Draws the part of the target that begins at (x, y) and is at most `side` long and wide.
void drawTile(RsvgHandle* document, DrawingSize size, const Target& target, int x, int y,
              int side) {
    const int stride = target.width * 4;
    std::uint8_t* first =
        target.pixels.data() + static_cast<std::ptrdiff_t>(y) * stride + std::ptrdiff_t{4} * x;
    const Surface surface(cairo_image_surface_create_for_data(
        first, CAIRO_FORMAT_ARGB32, std::min(side, target.width - x),
        std::min(side, target.height - y), stride));
    const Drawing drawing(cairo_create(surface.get()));
    cairo_translate(drawing.get(), -x, -y);
    cairo_scale(drawing.get(), target.width / size.width, target.height / size.height);
    const RsvgRectangle viewport{0.0, 0.0, size.width, size.height};
    GError* error = nullptr;
    if (rsvg_handle_render_document(document, drawing.get(), &viewport, &error) == 0) fail(error);
    cairo_surface_flush(surface.get());
    if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS) fail(nullptr);
}

/// From native words, blue lowest, to red first.
void reorder(std::span<std::uint8_t> pixels) {
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) std::swap(pixels[i], pixels[i + 2]);
}

constexpr std::int64_t workingMemory = std::int64_t{1} << 30U;

} // namespace

DrawingSize sizeOfSvg(Bytes file) {
    limitMemory(workingMemory, 0);
    const Handle document = documentIn(file);
    const DrawingSize size = sizeOf(document.get());
    if (!(size.width > 0.0) || !(size.height > 0.0)) throw CodecError("the drawing has no size");
    return size;
}

void drawSvg(Bytes file, int width, int height, PictureOutput& output) {
    constexpr int longestSideOfSurface = 16384;
    checkSize(width, height);
    limitMemory(workingMemory, std::int64_t{width} * height);
    const Handle document = documentIn(file);
    const DrawingSize size = sizeOf(document.get());
    if (!(size.width > 0.0) || !(size.height > 0.0)) throw CodecError("the drawing has no size");
    const Target target{output.begin({width, height, Alpha::premultiplied, Colors::srgb, {}}),
                        width, height};
    for (int y = 0; y < height; y += longestSideOfSurface)
        for (int x = 0; x < width; x += longestSideOfSurface)
            drawTile(document.get(), size, target, x, y, longestSideOfSurface);
    reorder(target.pixels);
}

} // namespace quillabrae::codecs
