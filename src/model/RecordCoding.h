// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/FloatingPixelSelection.h"
#include "model/JsonError.h"
#include "model/JsonForm.h"
#include "model/PaintAppSettings.h"
#include "model/PaintHistory.h"
#include "model/PaintImage.h"
#include "model/PaintLayer.h"
#include "model/PaintProject.h"
#include "model/PaintStroke.h"
#include "model/PixelSelection.h"
#include "model/RecentProject.h"

/// The JSON form of the records: objects whose keys are the field names, sorted.
///
/// An absent optional field writes no key. On reading, unknown keys are passed over, and a missing
/// or null key is a fault except for optional fields, a project's `resolutionDPI` and
/// `isCanvasSelected`, and everything in PaintAppSettings. All of it throws JsonError.
namespace quillabrae::model {

/// The JSON form of a record that has a table of fields in RecordCoding.cpp.
template <typename Record>
struct RecordJsonForm {
    static void write(JsonWriter& writer, const Record& record);
    /// Members whose keys may be missing and are keep their values.
    static void read(JsonReader& reader, Record& record);
};

// clang-format off
template <> struct JsonForm<CanvasPoint> : RecordJsonForm<CanvasPoint> {};
template <> struct JsonForm<ColorValue> : RecordJsonForm<ColorValue> {};
template <> struct JsonForm<FloatingPixelSelection> : RecordJsonForm<FloatingPixelSelection> {};
template <> struct JsonForm<PaintAppSettings> : RecordJsonForm<PaintAppSettings> {};
template <> struct JsonForm<PaintHistoryEntry> : RecordJsonForm<PaintHistoryEntry> {};
template <> struct JsonForm<PaintHistoryState> : RecordJsonForm<PaintHistoryState> {};
template <> struct JsonForm<PaintImage> : RecordJsonForm<PaintImage> {};
template <> struct JsonForm<PaintLayer> : RecordJsonForm<PaintLayer> {};
template <> struct JsonForm<PaintProject> : RecordJsonForm<PaintProject> {};
template <> struct JsonForm<PaintStroke> : RecordJsonForm<PaintStroke> {};
template <> struct JsonForm<PixelSelection> : RecordJsonForm<PixelSelection> {};
template <> struct JsonForm<RecentProject> : RecordJsonForm<RecentProject> {};

template <> struct JsonForm<CanvasAnchor>
    : VocabularyJsonForm<CanvasAnchor, canvasAnchorFromRawText> {};
template <> struct JsonForm<CanvasShape>
    : VocabularyJsonForm<CanvasShape, canvasShapeFromRawText> {};
template <> struct JsonForm<CanvasTextAlignment>
    : VocabularyJsonForm<CanvasTextAlignment, canvasTextAlignmentFromRawText> {};
template <> struct JsonForm<PaintTool> : VocabularyJsonForm<PaintTool, paintToolFromRawText> {};
template <> struct JsonForm<ShapeDrawingMode>
    : VocabularyJsonForm<ShapeDrawingMode, shapeDrawingModeFromRawText> {};
// clang-format on

/// Streams a record, or a vector of records, into `sink`.
template <typename Value>
void encodeTo(ByteSink& sink, const Value& value) {
    JsonWriter writer(sink);
    JsonForm<Value>::write(writer, value);
    writer.finish();
}

/// The length of the encoded form. Costs nothing for pictures, however large.
template <typename Value>
qint64 encodedByteCount(const Value& value) {
    CountingSink counter;
    encodeTo(counter, value);
    return counter.count();
}

template <typename Value>
QByteArray encodedJson(const Value& value) {
    ByteArraySink sink(encodedByteCount(value));
    encodeTo(sink, value);
    return sink.take();
}

/// Reads a whole document onto `value`.
template <typename Value>
void decodeOnto(Value& value, JsonReader& reader) {
    JsonForm<Value>::read(reader, value);
    reader.finish();
}

/// Equal pictures within the document share their bytes in the result. A document that is moved in
/// and whose capacity exceeds its size by JsonReader::padding is not copied.
template <typename Value>
Value decodedJson(QByteArray json) {
    Value value{};
    JsonReader reader(std::move(json));
    decodeOnto(value, reader);
    return value;
}

/// `base` with those settings changed that `json`, an object of some of their keys, names.
PaintAppSettings mergedSettings(const PaintAppSettings& base, const QByteArray& json);

} // namespace quillabrae::model
