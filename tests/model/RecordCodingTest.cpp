// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/RecordCoding.h"
#include "support/RandomRecords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quillabrae::model {
namespace {

using tests::RandomRecords;

constexpr const char* layerJson = R"({
  "bitmapPNGData": "iVBORw==",
  "id": "0F8FAD5B-D9CB-469F-A165-70867728950E",
  "isLocked": false,
  "isVisible": true,
  "name": "Background",
  "opacity": 0.5
})";

QByteArray projectJson() {
    return QByteArray(R"({
  "canvasHeight": 600,
  "canvasWidth": 800,
  "id": "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
  "isCanvasSelected": true,
  "lastModified": "2024-02-29T23:59:58Z",
  "layers": [
    )") + QByteArray(layerJson).replace("\n", "\n    ") +
           R"(
  ],
  "resolutionDPI": 300,
  "selectedLayerID": "0F8FAD5B-D9CB-469F-A165-70867728950E",
  "title": "Untitled"
})";
}

QByteArray without(QByteArray json, const QByteArray& line) {
    const qsizetype at = json.indexOf(line);
    EXPECT_NE(at, -1) << line.constData();
    return json.remove(at, line.size());
}

// The JsonError that decoding raises.
template <typename Record>
JsonError faultOf(const QByteArray& json) {
    try {
        decodedJson<Record>(json);
    } catch (const JsonError& error) {
        return error;
    }
    ADD_FAILURE() << "no fault in " << json.left(200).constData();
    return {{}, {}};
}

template <typename Record>
void expectRoundTrip(const Record& record) {
    const QByteArray json = encodedJson(record);
    const auto read = decodedJson<Record>(json);
    EXPECT_EQ(read, record) << json.constData();
    EXPECT_EQ(encodedJson(read), json);
    EXPECT_EQ(encodedByteCount(record), json.size());
}

TEST(RecordCoding, AProjectIsPrettyPrintedWithSortedKeys) {
    const auto project = decodedJson<PaintProject>(projectJson());
    EXPECT_EQ(project.canvasWidth, 800.0);
    EXPECT_EQ(project.layers.at(0).opacity, 0.5);
    EXPECT_EQ(project.layers.at(0).bitmapPNGData->toByteArray(), QByteArray("\x89PNG"));
    EXPECT_EQ(project.lastModified, QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58), Qt::UTC));
    EXPECT_EQ(encodedJson(project), projectJson());
}

TEST(RecordCoding, RandomRecordsEncodeDecodeAndEncodeToTheSameBytes) {
    RandomRecords random(1);
    for (int i = 0; i < 300; ++i) {
        expectRoundTrip(random.project());
        expectRoundTrip(random.stroke());
        expectRoundTrip(random.image());
        expectRoundTrip(random.recent());
        expectRoundTrip(random.settings());
    }
    for (int i = 0; i < 30; ++i) expectRoundTrip(random.history());
}

TEST(RecordCoding, AnEmptyListIsWrittenOnOneLine) {
    EXPECT_EQ(encodedJson(PaintHistoryState()),
              QByteArray("{\n  \"entries\": [],\n  \"selectedIndex\": -1\n}"));
}

TEST(RecordCoding, AProjectWithoutResolutionHas96Dpi) {
    const auto project =
        decodedJson<PaintProject>(without(projectJson(), "  \"resolutionDPI\": 300,\n"));
    EXPECT_EQ(project.resolutionDPI, 96.0);
}

TEST(RecordCoding, AProjectThatDoesNotSayWhetherItsCanvasIsSelectedHasItUnselected) {
    const auto project =
        decodedJson<PaintProject>(without(projectJson(), "  \"isCanvasSelected\": true,\n"));
    EXPECT_FALSE(project.isCanvasSelected);
}

TEST(RecordCoding, ResolutionAndCanvasSelectionAreAlwaysWritten) {
    PaintProject project = RandomRecords(2).project();
    project.resolutionDPI = 96.0;
    project.isCanvasSelected = false;
    const QByteArray json = encodedJson(project);
    EXPECT_TRUE(json.contains("\"resolutionDPI\": 96"));
    EXPECT_TRUE(json.contains("\"isCanvasSelected\": false"));
}

TEST(RecordCoding, AbsentOptionalFieldsWriteNoKey) {
    PaintProject project = RandomRecords(3).project();
    project.fileURL.reset();
    project.pixelSelection.reset();
    project.floatingSelection.reset();
    for (PaintLayer& layer : project.layers) layer.bitmapPNGData.reset();
    const QByteArray json = encodedJson(project);
    for (const char* key : {"fileURL", "pixelSelection", "floatingSelection", "bitmapPNGData"})
        EXPECT_FALSE(json.contains(key)) << key;
    EXPECT_FALSE(json.contains("null"));
}

TEST(RecordCoding, ALayerWithoutBitmapIsEmpty) {
    const auto layer =
        decodedJson<PaintLayer>(without(layerJson, "  \"bitmapPNGData\": \"iVBORw==\",\n"));
    EXPECT_EQ(layer.bitmapPNGData, std::nullopt);
}

TEST(RecordCoding, ANullOptionalFieldIsAbsent) {
    const auto layer =
        decodedJson<PaintLayer>(QByteArray(layerJson).replace("\"iVBORw==\"", "null"));
    EXPECT_EQ(layer.bitmapPNGData, std::nullopt);
}

TEST(RecordCoding, ALayerWithoutOpacityIsUnreadable) {
    const JsonError error =
        faultOf<PaintProject>(QByteArray(projectJson()).replace("\"opacity\"", "\"opacities\""));
    EXPECT_EQ(error.path(), QStringLiteral("layers[0].opacity"));
    EXPECT_EQ(error.message(), QStringLiteral("A value is missing"));
    EXPECT_EQ(error.description(), QStringLiteral("A value is missing at layers[0].opacity."));
}

TEST(RecordCoding, EveryOtherFieldIsRequired) {
    const auto expectRequired = [](const QByteArray& json, auto record, const char* key) {
        QByteArray changed = json;
        changed.replace(QByteArray("\"") + key + "\":", "\"other\":");
        const JsonError error = faultOf<decltype(record)>(changed);
        EXPECT_TRUE(error.path().endsWith(QLatin1StringView(key))) << key;
    };
    for (const char* key : {"canvasHeight", "canvasWidth", "id", "lastModified", "layers",
                            "selectedLayerID", "title"})
        expectRequired(projectJson().replace(layerJson, "{}"), PaintProject(), key);
    for (const char* key : {"id", "isLocked", "isVisible", "name", "opacity"})
        expectRequired(layerJson, PaintLayer(), key);
    for (const char* key : {"alpha", "blue", "green", "red"})
        expectRequired(encodedJson(ColorValue()), ColorValue(), key);
    for (const char* key : {"color", "id", "lineWidth", "points", "tool"})
        expectRequired(encodedJson(PaintStroke()), PaintStroke(), key);
    for (const char* key : {"height", "layerID", "pngData", "width"})
        expectRequired(encodedJson(FloatingPixelSelection()), FloatingPixelSelection(), key);
    for (const char* key : {"height", "width", "x", "y"})
        expectRequired(encodedJson(PixelSelection()), PixelSelection(), key);
    for (const char* key : {"entries", "selectedIndex"})
        expectRequired(encodedJson(PaintHistoryState()), PaintHistoryState(), key);
}

TEST(RecordCoding, UnknownKeysArePassedOver) {
    QByteArray json = layerJson;
    json.replace("{\n", R"({ "later": {"deep": [1, [null, {"x": "y"}], "}"]}, "more": true,)");
    EXPECT_EQ(decodedJson<PaintLayer>(json), decodedJson<PaintLayer>(layerJson));
}

TEST(RecordCoding, AKeyThatStandsTwiceIsAFault) {
    QByteArray json = layerJson;
    json.replace("\"opacity\": 0.5", "\"opacity\": 0.5, \"opacity\": 1");
    EXPECT_EQ(faultOf<PaintLayer>(json).path(), QStringLiteral("opacity"));
}

TEST(RecordCoding, IdentifiersAreWrittenInUpperCaseAndReadInAnyCase) {
    QByteArray json = layerJson;
    json.replace("0F8FAD5B-D9CB", "0f8fad5b-d9Cb");
    const auto layer = decodedJson<PaintLayer>(json);
    EXPECT_EQ(encodedJson(layer), QByteArray(layerJson));
}

TEST(RecordCoding, WhatIsNoIdentifierIsAFault) {
    for (const char* text :
         {"", "0F8FAD5B", "{0F8FAD5B-D9CB-469F-A165-70867728950E}",
          "0F8FAD5BD9CB469FA16570867728950E", "0F8FAD5B-D9CB-469F-A165-70867728950G",
          "0F8FAD5B-D9CB-469F-A165-70867728950E0"}) {
        QByteArray json = layerJson;
        json.replace("0F8FAD5B-D9CB-469F-A165-70867728950E", text);
        EXPECT_EQ(faultOf<PaintLayer>(json).path(), QStringLiteral("id")) << text;
    }
}

TEST(RecordCoding, MillisecondsOfADateAreDroppedOnWriting) {
    RecentProject recent = RandomRecords(4).recent();
    recent.openedAt = QDateTime(QDate(2025, 1, 2), QTime(3, 4, 5, 999), Qt::UTC);
    EXPECT_TRUE(encodedJson(recent).contains("\"2025-01-02T03:04:05Z\""));
}

TEST(RecordCoding, DatesOfOtherOffsetsAndWithFractionsAreRead) {
    const auto read = [](const char* text) {
        return JsonForm<QDateTime>::fromText(QString::fromLatin1(text));
    };
    const QDateTime instant(QDate(2025, 1, 2), QTime(3, 4, 5), Qt::UTC);
    EXPECT_EQ(read("2025-01-02T03:04:05Z"), instant);
    EXPECT_EQ(read("2025-01-02T05:34:05+02:30"), instant);
    EXPECT_EQ(read("2025-01-01T23:04:05-0400"), instant);
    EXPECT_EQ(read("2025-01-02T03:04:05.25Z"), instant.addMSecs(250));
    EXPECT_EQ(read("2025-01-02T03:04:05.1239Z"), instant.addMSecs(123));
    for (const char* text :
         {"", "2025-01-02", "2025-01-02T03:04:05", "2025-13-02T03:04:05Z", "2025-02-29T03:04:05Z",
          "2025-01-02T24:00:00Z", "2025-01-02T03:04:05.Z", "2025-01-02T03:04:05+2", "1735787045",
          "2025-01-02 03:04:05Z", "2025-01-02T03:04:05Zz", "0000-01-01T00:00:00Z",
          "0001-01-01T00:00:00+00:01", "9999-12-31T23:59:59-00:01", "+025-01-02T03:04:05Z"})
        EXPECT_EQ(read(text), std::nullopt) << text;
}

TEST(RecordCoding, ADateThatIsNoneCannotBeWritten) {
    RecentProject recent = RandomRecords(5).recent();
    recent.openedAt = QDateTime();
    EXPECT_THROW(encodedJson(recent), JsonError);
    recent.openedAt = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_THROW(encodedJson(recent), JsonError);
}

TEST(RecordCoding, ANumberThatIsNotFiniteCannotBeWritten) {
    PaintProject project = RandomRecords(6).project();
    project.layers.resize(3);
    project.layers[2].opacity = std::numeric_limits<double>::quiet_NaN();
    try {
        encodedJson(project);
        ADD_FAILURE() << "it was written";
    } catch (const JsonError& error) {
        EXPECT_EQ(error.path(), QStringLiteral("layers[2].opacity"));
    }
    EXPECT_THROW(encodedJson(CanvasPoint{0.0, std::numeric_limits<double>::infinity()}), JsonError);
}

TEST(RecordCoding, NumbersAreWrittenInTheirShortestForm) {
    EXPECT_EQ(encodedJson(CanvasPoint{0.1, 512.0}),
              QByteArray("{\n  \"x\": 0.1,\n  \"y\": 512\n}"));
    EXPECT_EQ(encodedJson(CanvasPoint{-0.0, 1e300}),
              QByteArray("{\n  \"x\": -0,\n  \"y\": 1e+300\n}"));
    EXPECT_TRUE(std::signbit(decodedJson<CanvasPoint>(R"({"x":-0,"y":0})").x));
}

TEST(RecordCoding, AnEscapedSlashIsTakenForASlash) {
    QByteArray json = layerJson;
    json.replace("iVBORw==", R"(\/+\/+)");
    EXPECT_EQ(decodedJson<PaintLayer>(json).bitmapPNGData->toByteArray(),
              QByteArray::fromBase64("/+/+"));
}

TEST(RecordCoding, WhatIsNoBase64IsAFault) {
    for (const char* text : {"iVBOR", "iVBORw=", "iVB=Rw==", "iVBO Rw==", "iVBO\\nRw==", "=",
                             "====", "iVBOR-==", "a==="}) {
        QByteArray json = layerJson;
        json.replace("iVBORw==", text);
        EXPECT_EQ(faultOf<PaintLayer>(json).path(), QStringLiteral("bitmapPNGData")) << text;
    }
}

TEST(RecordCoding, HalfOfASurrogatePairIsWrittenAsTheReplacementCharacter) {
    PaintLayer layer = decodedJson<PaintLayer>(layerJson);
    layer.name = QStringLiteral("a") + QChar(0xd800) + QStringLiteral("b");
    EXPECT_EQ(decodedJson<PaintLayer>(encodedJson(layer)).name, QStringLiteral("a\ufffdb"));
}

TEST(RecordCoding, AByteOrderMarkInATextIsKept) {
    PaintLayer layer = decodedJson<PaintLayer>(layerJson);
    layer.name = QStringLiteral("\ufeffa\ufeff");
    expectRoundTrip(layer);
}

TEST(RecordCoding, AVocabularyIsItsRawText) {
    PaintStroke stroke;
    stroke.tool = PaintTool::paintbrush;
    QByteArray json = encodedJson(stroke);
    EXPECT_TRUE(json.contains("\"tool\": \"brush\""));
    json.replace("\"brush\"", "\"paintbrush\"");
    EXPECT_EQ(faultOf<PaintStroke>(json).path(), QStringLiteral("tool"));
}

TEST(RecordCoding, SettingsTakeDefaultsForWhatIsMissing) {
    PaintAppSettings expected;
    expected.brushSize = 12.0;
    EXPECT_EQ(decodedJson<PaintAppSettings>(R"({"brushSize": 12, "later": [1]})"), expected);
    EXPECT_EQ(decodedJson<PaintAppSettings>("{}"), PaintAppSettings());
}

TEST(RecordCoding, MergedSettingsKeepWhatIsNotNamed) {
    const PaintAppSettings base = RandomRecords(7).settings();
    PaintAppSettings expected = base;
    expected.selectedTool = PaintTool::eraser;
    expected.textBold = !base.textBold;
    const QByteArray json = QByteArray(R"({"selectedTool": "eraser", "textBold": )") +
                            (expected.textBold ? "true}" : "false}");
    EXPECT_EQ(mergedSettings(base, json), expected);
    EXPECT_THROW(mergedSettings(base, R"({"textBold": "yes"})"), JsonError);
}

TEST(RecordCoding, EqualPicturesShareTheirBytesAfterReading) {
    RandomRecords random(8);
    PaintHistoryState history;
    const PaintProject project = random.project();
    PaintLayer large = random.layer();
    large.bitmapPNGData = PngBytes(QByteArray(100'000, 'x'));
    for (int i = 0; i < 25; ++i) {
        PaintProject step = project;
        step.layers = {large, random.layer()};
        history.entries.push_back({random.uuid(), random.text(), random.text(), step});
    }
    const auto read = decodedJson<PaintHistoryState>(encodedJson(history));
    const PngBytes& first = *read.entries.front().project.layers.front().bitmapPNGData;
    for (const PaintHistoryEntry& entry : read.entries)
        EXPECT_TRUE(entry.project.layers.front().bitmapPNGData->sharesBufferWith(first));
}

} // namespace
} // namespace quillabrae::model
