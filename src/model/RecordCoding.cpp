// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/RecordCoding.h"

#include "model/JsonFields.h"

namespace quillabrae::model {
namespace {

template <typename Record>
struct FieldsOf;

template <>
struct FieldsOf<CanvasPoint> {
    static constexpr auto table =
        jsonFields(required("x", &CanvasPoint::x), required("y", &CanvasPoint::y));
};

template <>
struct FieldsOf<ColorValue> {
    static constexpr auto table =
        jsonFields(required("alpha", &ColorValue::alpha), required("blue", &ColorValue::blue),
                   required("green", &ColorValue::green), required("red", &ColorValue::red));
};

template <>
struct FieldsOf<FloatingPixelSelection> {
    using R = FloatingPixelSelection;
    static constexpr auto table =
        jsonFields(required("height", &R::height), required("layerID", &R::layerID),
                   required("pngData", &R::pngData), required("width", &R::width));
};

template <>
struct FieldsOf<PaintAppSettings> {
    using R = PaintAppSettings;
    static constexpr auto table = jsonFields(
        defaulted("brushSize", &R::brushSize),
        defaulted("lastCanvasResizeAnchor", &R::lastCanvasResizeAnchor),
        defaulted("magicWandMatchPercentage", &R::magicWandMatchPercentage),
        defaulted("paintBucketMatchPercentage", &R::paintBucketMatchPercentage),
        defaulted("pencilHardness", &R::pencilHardness),
        defaulted("primaryColor", &R::primaryColor),
        defaulted("secondaryColor", &R::secondaryColor),
        defaulted("selectedShape", &R::selectedShape), defaulted("selectedTool", &R::selectedTool),
        defaulted("shapeDrawingMode", &R::shapeDrawingMode),
        defaulted("shapeOutlineWidth", &R::shapeOutlineWidth),
        defaulted("showsPixelGrid", &R::showsPixelGrid),
        defaulted("textAlignment", &R::textAlignment), defaulted("textBold", &R::textBold),
        defaulted("textFontFamily", &R::textFontFamily),
        defaulted("textFontSize", &R::textFontSize), defaulted("textItalic", &R::textItalic),
        defaulted("textStrikethrough", &R::textStrikethrough),
        defaulted("textUnderline", &R::textUnderline), defaulted("zoomScale", &R::zoomScale));
};

template <>
struct FieldsOf<PaintHistoryEntry> {
    using R = PaintHistoryEntry;
    static constexpr auto table =
        jsonFields(required("id", &R::id), required("project", &R::project),
                   required("symbolName", &R::symbolName), required("title", &R::title));
};

template <>
struct FieldsOf<PaintHistoryState> {
    using R = PaintHistoryState;
    static constexpr auto table =
        jsonFields(required("entries", &R::entries), required("selectedIndex", &R::selectedIndex));
};

template <>
struct FieldsOf<PaintImage> {
    using R = PaintImage;
    static constexpr auto table = jsonFields(
        required("height", &R::height), required("id", &R::id), required("pngData", &R::pngData),
        required("width", &R::width), required("x", &R::x), required("y", &R::y));
};

template <>
struct FieldsOf<PaintLayer> {
    using R = PaintLayer;
    static constexpr auto table =
        jsonFields(optional("bitmapPNGData", &R::bitmapPNGData), required("id", &R::id),
                   required("isLocked", &R::isLocked), required("isVisible", &R::isVisible),
                   required("name", &R::name), required("opacity", &R::opacity));
};

template <>
struct FieldsOf<PaintProject> {
    using R = PaintProject;
    static constexpr auto table = jsonFields(
        required("canvasHeight", &R::canvasHeight), required("canvasWidth", &R::canvasWidth),
        optional("fileURL", &R::fileURL), optional("floatingSelection", &R::floatingSelection),
        required("id", &R::id), defaulted("isCanvasSelected", &R::isCanvasSelected),
        required("lastModified", &R::lastModified), required("layers", &R::layers),
        optional("pixelSelection", &R::pixelSelection),
        defaulted("resolutionDPI", &R::resolutionDPI),
        required("selectedLayerID", &R::selectedLayerID), required("title", &R::title));
};

template <>
struct FieldsOf<PaintStroke> {
    using R = PaintStroke;
    static constexpr auto table = jsonFields(
        required("color", &R::color), optional("hardness", &R::hardness), required("id", &R::id),
        required("lineWidth", &R::lineWidth), required("points", &R::points),
        optional("secondaryColor", &R::secondaryColor), optional("shape", &R::shape),
        optional("shapeDrawingMode", &R::shapeDrawingMode), required("tool", &R::tool));
};

template <>
struct FieldsOf<PixelSelection> {
    using R = PixelSelection;
    static constexpr auto table =
        jsonFields(required("height", &R::height), optional("maskPNGData", &R::maskPNGData),
                   required("width", &R::width), required("x", &R::x), required("y", &R::y));
};

template <>
struct FieldsOf<RecentProject> {
    using R = RecentProject;
    static constexpr auto table = jsonFields(
        required("openedAt", &R::openedAt), required("title", &R::title), required("url", &R::url));
};

} // namespace

template <typename Record>
void RecordJsonForm<Record>::write(JsonWriter& writer, const Record& record) {
    writeFields(writer, record, FieldsOf<Record>::table);
}

template <typename Record>
void RecordJsonForm<Record>::read(JsonReader& reader, Record& record) {
    readFields(reader, record, FieldsOf<Record>::table);
}

template struct RecordJsonForm<CanvasPoint>;
template struct RecordJsonForm<ColorValue>;
template struct RecordJsonForm<FloatingPixelSelection>;
template struct RecordJsonForm<PaintAppSettings>;
template struct RecordJsonForm<PaintHistoryEntry>;
template struct RecordJsonForm<PaintHistoryState>;
template struct RecordJsonForm<PaintImage>;
template struct RecordJsonForm<PaintLayer>;
template struct RecordJsonForm<PaintProject>;
template struct RecordJsonForm<PaintStroke>;
template struct RecordJsonForm<PixelSelection>;
template struct RecordJsonForm<RecentProject>;

PaintAppSettings mergedSettings(const PaintAppSettings& base, const QByteArray& json) {
    PaintAppSettings settings = base;
    JsonReader reader(json);
    decodeOnto(settings, reader);
    return settings;
}

} // namespace quillabrae::model
