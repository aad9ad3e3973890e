// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/JsonError.h"
#include "model/JsonWriter.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillabrae::model {
namespace {

// Notes what it is given and how large the largest piece was.
class NotingSink final : public ByteSink {
public:
    void write(std::span<const char> bytes) override {
        m_bytes.append(bytes.data(), std::ssize(bytes));
        m_largest = std::max(m_largest, bytes.size());
    }
    const QByteArray& bytes() const { return m_bytes; }
    std::size_t largestPiece() const { return m_largest; }

private:
    QByteArray m_bytes;
    std::size_t m_largest = 0;
};

std::span<const std::uint8_t> spanOf(const QByteArray& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

TEST(JsonWriter, NestsByTwoSpaces) {
    NotingSink sink;
    JsonWriter writer(sink);
    writer.beginArray();
    writer.beginObject();
    writer.key("a");
    writer.beginArray();
    writer.integer(-1);
    writer.boolean(true);
    writer.endArray();
    writer.key("b");
    writer.beginObject();
    writer.endObject();
    writer.endObject();
    writer.string(QStringLiteral("x"));
    writer.endArray();
    writer.finish();
    EXPECT_EQ(sink.bytes(), QByteArray(R"([
  {
    "a": [
      -1,
      true
    ],
    "b": {}
  },
  "x"
])"));
}

TEST(JsonWriter, EscapesWhatATextCannotHold) {
    NotingSink sink;
    JsonWriter writer(sink);
    writer.string(QStringLiteral("\"\\/\b\f\n\r\t\0\x1f\x7fé🖌"));
    writer.finish();
    EXPECT_EQ(sink.bytes(), QByteArray(R"("\"\\/\b\f\n\r\t\u0000\u001f)"
                                       "\x7f\xc3\xa9\xf0\x9f\x96\x8c\""));
}

TEST(JsonWriter, TellsWhereItCouldNotGoOn) {
    NotingSink sink;
    JsonWriter writer(sink);
    writer.beginObject();
    writer.key("layers");
    writer.beginArray();
    writer.beginObject();
    writer.endObject();
    writer.beginObject();
    writer.key("sizes");
    writer.beginArray();
    try {
        writer.number(std::numeric_limits<double>::infinity());
        ADD_FAILURE() << "it was written";
    } catch (const JsonError& error) {
        EXPECT_EQ(error.path(), QStringLiteral("layers[1].sizes[0]"));
        EXPECT_EQ(error.message(), QStringLiteral("A number is not finite"));
    }
}

TEST(JsonWriter, APictureReachesTheSinkInSmallPieces) {
    const QByteArray picture(10'000'001, 'p');
    NotingSink sink;
    JsonWriter writer(sink);
    writer.base64(spanOf(picture));
    writer.finish();
    EXPECT_EQ(sink.bytes(), '"' + picture.toBase64() + '"');
    EXPECT_LE(sink.largestPiece(), 100'000U);
}

TEST(JsonWriter, ADocumentWithinADocumentReachesTheSinkInSmallPieces) {
    const QByteArray picture(1'000'003, 'p');
    NotingSink sink;
    JsonWriter writer(sink);
    writer.base64Stream([&](ByteSink& inner) {
        JsonWriter document(inner);
        document.base64(spanOf(picture));
        document.finish();
    });
    writer.finish();
    EXPECT_EQ(sink.bytes(), '"' + ('"' + picture.toBase64() + '"').toBase64() + '"');
    EXPECT_LE(sink.largestPiece(), 100'000U);
}

TEST(Base64Sink, IsTheSameHoweverItsInputIsCut) {
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i) bytes += static_cast<char>(i * 7);
    for (qsizetype cut = 1; cut < 20; ++cut) {
        NotingSink sink;
        Base64Sink letters(sink);
        for (qsizetype at = 0; at < bytes.size(); at += cut) {
            const QByteArray piece = bytes.mid(at, cut);
            letters.write({piece.constData(), static_cast<std::size_t>(piece.size())});
        }
        letters.finish();
        EXPECT_EQ(sink.bytes(), bytes.toBase64()) << cut;
    }
}

} // namespace
} // namespace quillabrae::model
