// SPDX-License-Identifier: GPL-3.0-or-later
// Every stored setting when it is missing, of another kind, or out of its range.
#include "model/RecordCoding.h"
#include "store/StoreTest.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <ostream>

namespace quillabrae::store {
namespace {

const QString settingsKey = QStringLiteral("Quillabrae.settings");

QJsonValue jsonValue(const char* text) {
    const QByteArray list = '[' + QByteArray(text) + ']';
    return QJsonDocument::fromJson(list)[0];
}

/// A value out of the range and the one in the range that it comes to.
struct Clamp {
    const char* stored = nullptr;
    const char* restored = nullptr;
};

struct Field {
    const char* key = nullptr;
    const char* standard = nullptr;
    /// Another value in the range.
    const char* other = nullptr;
    /// Of another kind, or no word of a closed vocabulary.
    const char* wrong = nullptr;
    std::vector<Clamp> clamps = {};
};

void PrintTo(const Field& field, std::ostream* stream) {
    *stream << field.key;
}

const Field fields[] = {
    {"selectedTool", "\"brush\"", "\"eraser\"", "\"broom\""},
    {"primaryColor", R"({"red":0,"green":0,"blue":0,"alpha":1})",
     R"({"red":0.5,"green":0.25,"blue":1,"alpha":0.5})", R"({"red":0.5,"green":0.25})"},
    {"secondaryColor", R"({"red":1,"green":1,"blue":1,"alpha":1})",
     R"({"red":0,"green":1,"blue":0.125,"alpha":1})", "\"white\""},
    {"brushSize", "5", "64.5", "\"5\"", {{"900", "512"}, {"0.5", "1"}, {"-1e300", "1"}}},
    {"selectedShape", "\"rectangle\"", "\"ellipse\"", "7"},
    {"shapeDrawingMode", "\"outline\"", "\"fill\"", "\"hollow\""},
    {"shapeOutlineWidth",
     "2",
     "3",
     "true",
     {{"2.4", "2"}, {"2.5", "3"}, {"0", "1"}, {"32.4", "32"}, {"1e9", "32"}}},
    {"pencilHardness", "100", "40", "[]", {{"-5", "0"}, {"100.5", "100"}}},
    {"magicWandMatchPercentage", "50", "12.5", "{}", {{"-0.1", "0"}, {"101", "100"}}},
    {"paintBucketMatchPercentage", "50", "0", "\"50\"", {{"-3", "0"}, {"1e9", "100"}}},
    {"textFontFamily", "\"Helvetica Neue\"", "\"Serif\"", "12"},
    {"textFontSize", "20", "11.5", "\"large\"", {{"0", "1"}, {"1000", "512"}}},
    {"textAlignment", "\"left\"", "\"right\"", "\"justified\""},
    {"textBold", "false", "true", "1"},
    {"textItalic", "false", "true", "\"true\""},
    {"textUnderline", "false", "true", "0"},
    {"textStrikethrough", "false", "true", "[true]"},
    {"zoomScale", "1", "8", "\"1\"", {{"0.01", "0.1"}, {"65", "64"}, {"-1", "0.1"}}},
    {"showsPixelGrid", "false", "true", "{}"},
    {"lastCanvasResizeAnchor", "\"left\"", "\"bottomRight\"", "\"middle\""},
};

QByteArray textOf(const QJsonObject& record) {
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

class EverySetting : public StoreTest, public testing::WithParamInterface<Field> {
protected:
    static QJsonObject othersOfAll() {
        QJsonObject record;
        for (const Field& field : fields)
            record.insert(QLatin1StringView(field.key), jsonValue(field.other));
        return record;
    }
    /// What a store that starts with such a record has, and has stored.
    QJsonObject restored(const QJsonObject& record) {
        preferences.setValue(settingsKey, QJsonDocument(record).toJson());
        const QByteArray settings = model::encodedJson(makeStore()->settings());
        EXPECT_EQ(model::encodedJson(makeStore()->settings()), settings);
        return QJsonDocument::fromJson(settings).object();
    }
    static QString key() { return QLatin1StringView(GetParam().key); }
    static QJsonObject othersWith(const char* value) {
        QJsonObject record = othersOfAll();
        record.insert(key(), jsonValue(value));
        return record;
    }
};

TEST_P(EverySetting, IsRestoredAsItWasStored) {
    EXPECT_EQ(textOf(restored(othersOfAll())), textOf(othersOfAll()));
}

TEST_P(EverySetting, ThatIsMissingTakesItsDefaultAndTheRestIsAsStored) {
    QJsonObject record = othersOfAll();
    record.remove(key());
    EXPECT_EQ(textOf(restored(record)), textOf(othersWith(GetParam().standard)));
}

TEST_P(EverySetting, OfAnotherKindMakesTheRecordUnreadable) {
    const QJsonObject result = restored(othersWith(GetParam().wrong));
    for (const Field& field : fields)
        EXPECT_EQ(result.value(QLatin1StringView(field.key)), jsonValue(field.standard))
            << field.key;
}

TEST_P(EverySetting, OutOfItsRangeIsBroughtIntoIt) {
    for (const Clamp& clamp : GetParam().clamps) {
        EXPECT_EQ(textOf(restored(othersWith(clamp.stored))), textOf(othersWith(clamp.restored)))
            << clamp.stored;
        const auto stored = QJsonDocument::fromJson(preferences.bytes(settingsKey)).object();
        EXPECT_EQ(stored.value(key()), jsonValue(clamp.restored)) << clamp.stored;
    }
}

INSTANTIATE_TEST_SUITE_P(, EverySetting, testing::ValuesIn(fields),
                         [](const auto& info) { return std::string(info.param.key); });

TEST(SettingFields, AreAllInTheTable) {
    const auto record = QJsonDocument::fromJson(model::encodedJson(model::PaintAppSettings()));
    EXPECT_EQ(record.object().size(), std::ssize(fields));
}

} // namespace
} // namespace quillabrae::store
