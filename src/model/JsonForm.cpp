// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/JsonForm.h"

#include <algorithm>

namespace quillabrae::model {
namespace {

constexpr qsizetype uuidLength = 36;

bool isHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool isUuidText(QStringView text) {
    if (text.size() != uuidLength) return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isDash = i == 8 || i == 13 || i == 18 || i == 23;
        if (isDash ? text[i] != u'-' : !isHexDigit(text[i])) return false;
    }
    return true;
}

// The number that `text` spells in decimal digits and nothing else.
std::optional<int> digits(QStringView text) {
    int value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9') return std::nullopt;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value;
}

// Whether the text has the shape of the pattern, in which 0 stands for a digit.
bool hasShape(QStringView text, QStringView pattern) {
    return std::ranges::equal(text, pattern, [](QChar c, QChar p) {
        return p == u'0' ? c >= u'0' && c <= u'9' : c == p;
    });
}

// Takes ".25" off the front of `text`, to the millisecond.
std::optional<int> takeFraction(QStringView& text) {
    if (!text.startsWith(u'.')) return 0;
    qsizetype end = 1;
    while (end < text.size() && text[end] >= u'0' && text[end] <= u'9') ++end;
    if (end == 1) return std::nullopt;
    int milliseconds = 0;
    for (qsizetype i = 1; i <= 3; ++i)
        milliseconds = milliseconds * 10 + (i < end ? text[i].unicode() - u'0' : 0);
    text = text.sliced(end);
    return milliseconds;
}

// Whether an instant in UTC can be written with a year of four digits.
bool hasText(const QDateTime& utc) {
    return utc.isValid() && utc.date().year() >= 1 && utc.date().year() <= 9999;
}

// Seconds east of UTC for "Z", "+01:00" or "+0100".
std::optional<int> offset(QStringView text) {
    if (text == u"Z") return 0;
    if (text.isEmpty() || (text[0] != u'+' && text[0] != u'-')) return std::nullopt;
    const bool isWest = text[0] == u'-';
    text = text.sliced(1);
    if (!hasShape(text, u"00:00") && !hasShape(text, u"0000")) return std::nullopt;
    const int hours = *digits(text.first(2));
    const int minutes = *digits(text.last(2));
    if (hours > 23 || minutes > 59) return std::nullopt;
    const int seconds = (hours * 60 + minutes) * 60;
    return isWest ? -seconds : seconds;
}

} // namespace

QByteArray JsonForm<QUuid>::text(const QUuid& value) {
    return value.toByteArray(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> JsonForm<QUuid>::fromText(QStringView text) {
    if (!isUuidText(text)) return std::nullopt;
    return QUuid::fromString(text);
}

void JsonForm<QUuid>::write(JsonWriter& writer, const QUuid& value) {
    const QByteArray letters = text(value);
    writer.plainString({letters.constData(), static_cast<std::size_t>(letters.size())});
}

void JsonForm<QUuid>::read(JsonReader& reader, QUuid& value) {
    const auto uuid = fromText(reader.string());
    if (!uuid) reader.fail(QStringLiteral("An identifier is expected"));
    value = *uuid;
}

void JsonForm<QUrl>::write(JsonWriter& writer, const QUrl& value) {
    writer.string(QString::fromLatin1(value.toEncoded()));
}

void JsonForm<QUrl>::read(JsonReader& reader, QUrl& value) {
    QUrl url(reader.string(), QUrl::StrictMode);
    if (!url.isValid()) reader.fail(QStringLiteral("A URL is expected"));
    value = std::move(url);
}

std::optional<QDateTime> JsonForm<QDateTime>::fromText(QStringView text) {
    constexpr QStringView shape = u"0000-00-00T00:00:00";
    if (text.size() <= shape.size() || !hasShape(text.first(shape.size()), shape))
        return std::nullopt;
    const auto part = [text](qsizetype at, qsizetype length) {
        return digits(text.sliced(at, length)).value_or(0);
    };
    const QDate date(part(0, 4), part(5, 2), part(8, 2));
    QStringView rest = text.sliced(shape.size());
    const std::optional<int> milliseconds = takeFraction(rest);
    const std::optional<int> east = offset(rest);
    if (!milliseconds || !east) return std::nullopt;
    const QTime time(part(11, 2), part(14, 2), part(17, 2), *milliseconds);
    if (!date.isValid() || !time.isValid()) return std::nullopt;
    const QDateTime instant = QDateTime(date, time, Qt::UTC).addSecs(-*east);
    if (!hasText(instant)) return std::nullopt;
    return instant;
}

void JsonForm<QDateTime>::write(JsonWriter& writer, const QDateTime& value) {
    const QDateTime utc = value.toUTC();
    if (!hasText(utc)) writer.fail(QStringLiteral("A date is not within the years 1 to 9999"));
    writer.string(utc.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'")));
}

void JsonForm<QDateTime>::read(JsonReader& reader, QDateTime& value) {
    const auto date = fromText(reader.string());
    if (!date) reader.fail(QStringLiteral("A date is expected"));
    value = *date;
}

} // namespace quillabrae::model
