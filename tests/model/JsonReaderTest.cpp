// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/JsonError.h"
#include "model/JsonReader.h"
#include "model/RecordCoding.h"
#include "support/PeakMemory.h"
#include "support/RandomRecords.h"
#include "support/Sanitizer.h"

#include <gtest/gtest.h>

#include <random>

namespace quillabrae::model {
namespace {

using tests::RandomRecords;

constexpr qint64 megabyte = qint64{1024} * 1024;

// What a document that is no record of the type says is wrong with it.
template <typename Record>
QString faultOf(const QByteArray& json) {
    try {
        decodedJson<Record>(json);
    } catch (const JsonError& error) {
        return error.description();
    }
    ADD_FAILURE() << "no fault in " << json.left(100).constData();
    return {};
}

QByteArray repeated(const char* text, qint64 size) {
    const QByteArray piece(text);
    return piece.repeated(size / piece.size());
}

QByteArray pointsJson(const QByteArray& points) {
    QByteArray json = encodedJson(PaintStroke());
    json.replace("[]", points);
    return json;
}

TEST(JsonReader, WhatIsNoDocumentIsAFault) {
    for (const char* json : {"",
                             " ",
                             "nonsense",
                             "{",
                             "}",
                             "[",
                             "]",
                             "{]",
                             "[}",
                             "{\"x\"",
                             "{\"x\":",
                             "{\"x\":1",
                             "{\"x\":1,",
                             "{\"x\":1,}",
                             "{,}",
                             "{\"x\" 1}",
                             "{x:1}",
                             "{\"x\":1,\"y\":2}}",
                             "{\"x\":1,\"y\":2} {}",
                             "{\"x\":1,\"y\":2},",
                             "{\"x\":1,\"y\":2}x",
                             "{\"x\":1 \"y\":2}",
                             "{\"x\":1,\"y\":2]",
                             "\"x",
                             "\"text\"",
                             "1",
                             "null",
                             "true",
                             "[1,2]",
                             "\xff\xfe{}",
                             "{\"x\":[}"})
        faultOf<CanvasPoint>(json);
}

TEST(JsonReader, ADocumentMayBeSurroundedBySpace) {
    EXPECT_EQ(decodedJson<CanvasPoint>(" \r\n\t{ \"x\" : 1 ,\n\"y\":2.5e0}\n "),
              (CanvasPoint{1.0, 2.5}));
}

TEST(JsonReader, WhatJsonDoesNotKnowAsANumberIsAFault) {
    for (const char* number :
         {"NaN",  "nan", "Infinity", "-Infinity", "1e999", "-1e999", "01",  "+1", ".5",  "1.", "1e",
          "0x10", "--1", "1_000",    "\"1\"",     "true",  "null",   "[1]", "{}", "1e+", "-"}) {
        const QByteArray json = QByteArray(R"({"x": 0, "y": )") + number + "}";
        EXPECT_TRUE(faultOf<CanvasPoint>(json).endsWith(QStringLiteral(" at y."))) << number;
    }
}

TEST(JsonReader, ANumberOfAMillionDigitsIsReadOrRefusedAtOnce) {
    const QByteArray digits = repeated("7", megabyte);
    EXPECT_EQ(decodedJson<CanvasPoint>(R"({"x": 0.)" + digits + R"(, "y": 0})").x, 7.0 / 9.0);
    faultOf<CanvasPoint>(R"({"x": )" + digits + R"(, "y": 0})");
    faultOf<CanvasPoint>(R"({"x": 1e)" + digits + R"(, "y": 0})");
    try {
        EXPECT_EQ(decodedJson<CanvasPoint>(R"({"x": 1e-)" + digits + R"(, "y": 0})").x, 0.0);
    } catch (const JsonError& error) {
        EXPECT_EQ(error.path(), QStringLiteral("x"));
    }
}

TEST(JsonReader, AnIndexIsAWholeNumber) {
    const auto index = [](const char* text) {
        return decodedJson<PaintHistoryState>(QByteArray(R"({"entries":[],"selectedIndex":)") +
                                              text + "}")
            .selectedIndex;
    };
    EXPECT_EQ(index("-1"), -1);
    EXPECT_EQ(index("2147483647"), 2147483647);
    EXPECT_EQ(index("3.0"), 3);
    for (const char* text : {"2147483648", "-2147483649", "0.5", "1e300", "9223372036854775808"})
        EXPECT_THROW(index(text), JsonError) << text;
}

TEST(JsonReader, TheWrongKindOfValueIsAFaultAtItsPath) {
    const QByteArray stroke = pointsJson(R"([{"x": 1, "y": 2}, {"x": 1, "y": "2"}])");
    EXPECT_EQ(faultOf<PaintStroke>(stroke), QStringLiteral("A number is expected at points[1].y."));
    EXPECT_EQ(faultOf<PaintStroke>(pointsJson("7")),
              QStringLiteral("An array is expected at points."));
    EXPECT_EQ(faultOf<PaintStroke>(pointsJson("[7]")),
              QStringLiteral("An object is expected at points[0]."));
    EXPECT_EQ(faultOf<PaintAppSettings>(R"({"textBold": 1})"),
              QStringLiteral("True or false is expected at textBold."));
    EXPECT_EQ(faultOf<PaintAppSettings>(R"({"textFontFamily": ["Serif"]})"),
              QStringLiteral("A text is expected at textFontFamily."));
}

TEST(JsonReader, EscapesOfATextAreResolved) {
    const auto family = [](const char* text) {
        return decodedJson<PaintAppSettings>(QByteArray(R"({"textFontFamily": ")") + text + "\"}")
            .textFontFamily;
    };
    EXPECT_EQ(family(R"(a\"\\\/\b\f\n\r\t\u00e9\ud83d\udd8c)"),
              QStringLiteral("a\"\\/\b\f\n\r\té🖌"));
    EXPECT_EQ(family(R"(a\u0000b)"), QStringLiteral("a\0b"));
    for (const char* text : {R"(\x)", R"(\u12)", R"(\u12g4)", "a\nb"})
        EXPECT_THROW(family(text), JsonError) << text;
}

TEST(JsonReader, HalfOfASurrogatePairNeverBreaksTheReader) {
    for (const char* text : {R"(\ud800)", R"(\udc00)", R"(\ud800\u0041)", R"(\ud800\ud800)",
                             R"(\ud83d)", R"(\udd8c\ud83d)", R"(\ud800x)"}) {
        const QByteArray json = QByteArray(R"({"textFontFamily": ")") + text + "\"}";
        try {
            EXPECT_TRUE(decodedJson<PaintAppSettings>(json).textFontFamily.isValidUtf16()) << text;
        } catch (const JsonError& error) {
            EXPECT_EQ(error.path(), QStringLiteral("textFontFamily"));
        }
    }
}

TEST(JsonReader, TextThatIsNoUtf8IsAFault) {
    for (const char* bytes :
         {"\xff", "\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80"}) {
        const QByteArray json = QByteArray(R"({"textFontFamily": ")") + bytes + "\"}";
        EXPECT_EQ(faultOf<PaintAppSettings>(json), QStringLiteral("The text is not valid UTF-8."));
    }
}

TEST(JsonReader, KeysMayBeEscaped) {
    EXPECT_EQ(decodedJson<CanvasPoint>(R"({"\u0078": 1, "y": 2})"), (CanvasPoint{1.0, 2.0}));
}

TEST(JsonReader, ATornDocumentIsAFaultWhereverItIsTorn) {
    RandomRecords random(11);
    const QByteArray json = encodedJson(random.history(3));
    for (qsizetype length = 0; length < json.size(); ++length)
        EXPECT_THROW(decodedJson<PaintHistoryState>(json.first(length)), JsonError) << length;
}

// Any change of a document gives a record, which can be written, or the one typed error.
TEST(JsonReader, AChangedDocumentIsReadOrRefused) {
    RandomRecords records(12);
    std::mt19937 random(12);
    const QByteArray alphabet = QByteArrayLiteral("{}[]\",:\\/nulltrue0123456789.eE+-\0\xff\x80= ");
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray json = encodedJson(records.history(2));
        for (int changes = 1 + records.below(4); changes > 0; --changes) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(json.size()));
            const auto length = static_cast<qsizetype>(random() % 40);
            switch (records.below(4)) {
                case 0:
                    json[at] = static_cast<char>(json[at] ^ (1 << records.below(8)));
                    break;
                case 1:
                    json[at] = alphabet[records.below(static_cast<int>(alphabet.size()))];
                    break;
                case 2:
                    json.remove(at, length);
                    break;
                default:
                    json.insert(at, json.mid(at / 2, length));
                    break;
            }
            if (json.isEmpty()) break;
        }
        try {
            encodedJson(decodedJson<PaintHistoryState>(json));
        } catch (const JsonError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 1000);
}

class HostileDocument : public testing::TestWithParam<const char*> {
protected:
    static constexpr qint64 size = 4 * megabyte;
    // A sanitizer keeps freed memory aside for a while.
    static constexpr qint64 usualMultiple = tests::hasSanitizer ? 24 : 8;
    static constexpr qint64 largestMultiple = tests::hasThreadSanitizer ? 32 : usualMultiple;
};

INSTANTIATE_TEST_SUITE_P(Pieces, HostileDocument,
                         testing::Values("[", "{\"a\":", "[{\"a\":", "[[],", "{\"x\":{},", "\"\",",
                                         "\\\"", "1,", "{\"x\":0,\"y\":0},", "null,", "\\u0041",
                                         "{}", "]", "}", ":", ",", "\"", "-"));

// The most that reading takes is the document, an index of four bytes for each of its characters,
// and what the record itself comes to.
TEST_P(HostileDocument, TakesASmallMultipleOfItsLength) {
    const QByteArray noise = repeated(GetParam(), size);
    for (const QByteArray& json :
         {noise, R"({"unknown": )" + noise + "}", R"({"unknown": ")" + noise + "\"}",
          pointsJson("[" + noise + R"({"x":0,"y":0}])"), R"({"points": [)" + noise + "]}"}) {
        tests::PeakMemory peak;
        try {
            decodedJson<PaintStroke>(json);
        } catch (const JsonError&) {
            // Refusing it is what most of these come to.
        }
        EXPECT_LT(peak.growth(), largestMultiple * size);
    }
}

TEST(JsonReader, TwentyThousandUnlikeTextsOfOneLengthAreReadQuickly) {
    RandomRecords random(13);
    PaintProject project = random.project();
    project.layers.clear();
    for (int i = 0; i < 20'000; ++i) {
        PaintLayer layer = random.layer();
        QByteArray bytes(96, 'x');
        bytes.replace(90, 6, QByteArray::number(100'000 + i));
        layer.bitmapPNGData = PngBytes(bytes);
        project.layers.push_back(layer);
    }
    EXPECT_EQ(decodedJson<PaintProject>(encodedJson(project)), project);
}

} // namespace
} // namespace quillabrae::model
