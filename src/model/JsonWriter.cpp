// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/JsonWriter.h"

#include "model/JsonError.h"

#include <QStringEncoder>

#include <array>
#include <charconv>
#include <cmath>

namespace quillabrae::model {
namespace {

constexpr std::size_t bufferSize = 8192;

// The escape of a character that a JSON string cannot hold as it is; empty for all others.
std::string escapeOf(char character) {
    switch (character) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\b':
            return "\\b";
        case '\f':
            return "\\f";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            break;
    }
    const auto code = static_cast<unsigned char>(character);
    if (code >= 0x20) return {};
    constexpr std::string_view digits = "0123456789abcdef";
    return std::string("\\u00") + digits[code >> 4] + digits[code & 0xf];
}

} // namespace

JsonWriter::JsonWriter(ByteSink& sink) : m_sink(sink) {
    m_buffer.reserve(bufferSize);
}

void JsonWriter::key(std::string_view name) {
    Level& level = m_levels.back();
    if (level.count++ > 0) put(",");
    newLine();
    put("\"");
    put(name);
    put("\": ");
    level.key = name;
}

void JsonWriter::number(double value) {
    beginValue();
    if (!std::isfinite(value)) fail(QStringLiteral("A number is not finite"));
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    put({digits.data(), static_cast<std::size_t>(result.ptr - digits.data())});
}

void JsonWriter::integer(qint64 value) {
    beginValue();
    put(std::to_string(value));
}

void JsonWriter::boolean(bool value) {
    beginValue();
    put(value ? "true" : "false");
}

void JsonWriter::string(const QString& text) {
    beginValue();
    QStringEncoder toUtf8(QStringEncoder::Utf8);
    const QByteArray bytes = toUtf8(text);
    put("\"");
    std::string_view rest(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    std::size_t plain = 0;
    while (plain < rest.size()) {
        const std::string escape = escapeOf(rest[plain++]);
        if (escape.empty()) continue;
        put(rest.substr(0, plain - 1));
        put(escape);
        rest.remove_prefix(plain);
        plain = 0;
    }
    put(rest);
    put("\"");
}

void JsonWriter::plainString(std::string_view text) {
    beginValue();
    put("\"");
    put(text);
    put("\"");
}

void JsonWriter::base64(std::span<const std::uint8_t> bytes) {
    beginValue();
    put("\"");
    flush();
    m_sink.writeBase64(bytes);
    put("\"");
}

void JsonWriter::base64Stream(const std::function<void(ByteSink&)>& write) {
    beginValue();
    put("\"");
    flush();
    Base64Sink letters(m_sink);
    write(letters);
    letters.finish();
    put("\"");
}

void JsonWriter::fail(const QString& message) const {
    QString path;
    for (const Level& level : m_levels) {
        if (level.container == Container::array) {
            path += QStringLiteral("[%1]").arg(level.count - 1);
        } else {
            if (!path.isEmpty()) path += QLatin1Char('.');
            path += QString::fromLatin1(level.key.data(), static_cast<qsizetype>(level.key.size()));
        }
    }
    throw JsonError(message, path);
}

void JsonWriter::begin(char bracket, Container container) {
    beginValue();
    put({&bracket, 1});
    m_levels.push_back({container, 0, {}});
}

void JsonWriter::end(char bracket) {
    const bool isEmpty = m_levels.back().count == 0;
    m_levels.pop_back();
    if (!isEmpty) newLine();
    put({&bracket, 1});
}

void JsonWriter::beginValue() {
    if (m_levels.empty() || m_levels.back().container == Container::object) return;
    if (m_levels.back().count++ > 0) put(",");
    newLine();
}

void JsonWriter::newLine() {
    put("\n");
    for (std::size_t i = 0; i < m_levels.size(); ++i) put("  ");
}

void JsonWriter::put(std::string_view text) {
    if (m_buffer.size() + text.size() > bufferSize) flush();
    if (text.size() > bufferSize) {
        m_sink.write(text);
    } else {
        m_buffer += text;
    }
}

void JsonWriter::flush() {
    if (!m_buffer.empty()) m_sink.write(m_buffer);
    m_buffer.clear();
}

} // namespace quillabrae::model
