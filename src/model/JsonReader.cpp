// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/JsonReader.h"

#include "model/Base64.h"
#include "model/JsonError.h"
#include "model/PngInterner.h"

#include <QStringDecoder>

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace quillabrae::model {
namespace {

namespace ondemand = simdjson::ondemand;

static_assert(JsonReader::padding >= static_cast<qsizetype>(simdjson::SIMDJSON_PADDING));

QString textOf(std::string_view utf8) {
    // A text that begins with what would be a byte order mark in a file keeps it.
    QStringDecoder toText(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return toText(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

// The document with nothing but zeros behind it: what lies there is looked at.
QByteArray padded(QByteArray json) {
    const qsizetype size = json.size();
    json.reserve(size + JsonReader::padding);
    std::fill_n(json.data() + size, JsonReader::padding, '\0');
    return json;
}

QString messageFor(simdjson::error_code code) {
    switch (code) {
        case simdjson::UTF8_ERROR:
            return QStringLiteral("The text is not valid UTF-8");
        case simdjson::EMPTY:
            return QStringLiteral("The document is empty");
        case simdjson::CAPACITY:
            return QStringLiteral("The document is too large");
        case simdjson::MEMALLOC:
            return QStringLiteral("The document does not fit into memory");
        case simdjson::STRING_ERROR:
            return QStringLiteral("A text is malformed");
        default:
            return QStringLiteral("The document is malformed");
    }
}

struct Document : ondemand::document {
    // The parser goes on without the room that it unescapes texts into, where there was no memory
    // for that.
    bool hasRoomForTexts() { return iter.string_buf_loc() != nullptr; }
};

// A step on the way to a value: the key of a member or, without one, the index of an element.
struct Step {
    std::string_view key;
    std::optional<qsizetype> index;
};

} // namespace

struct JsonReader::State {
    explicit State(QByteArray document)
        : owned(padded(std::move(document))),
          json(owned.constData(), static_cast<std::size_t>(owned.size())) {}
    explicit State(std::string_view document) : json(document) {}

    QByteArray owned;
    std::string_view json;
    ondemand::parser parser;
    Document document;
    // The value that the reader stands at; null for the document itself.
    ondemand::value* value = nullptr;
    std::vector<Step> path;
};

JsonReader::JsonReader(QByteArray json)
    : JsonReader(std::move(json), std::make_shared<PngInterner>()) {}

JsonReader::JsonReader(QByteArray json, std::shared_ptr<PngInterner> interner)
    : m_interner(std::move(interner)), m_state(std::make_unique<State>(std::move(json))) {
    begin();
}

JsonReader::JsonReader(std::string_view json)
    : m_interner(std::make_shared<PngInterner>()), m_state(std::make_unique<State>(json)) {
    begin();
}

void JsonReader::begin() {
    const std::string_view text = m_state->json;
    const auto fault =
        m_state->parser.iterate(text.data(), text.size(), text.size() + simdjson::SIMDJSON_PADDING)
            .get(static_cast<ondemand::document&>(m_state->document));
    if (fault != simdjson::SUCCESS) fail(messageFor(fault));
    if (!m_state->document.hasRoomForTexts()) fail(messageFor(simdjson::MEMALLOC));
}

JsonReader::~JsonReader() = default;

void JsonReader::object(const std::function<void(std::string_view key)>& onMember) {
    ondemand::value* const outer = m_state->value;
    ondemand::object members;
    const auto begun =
        outer ? outer->get_object().get(members) : m_state->document.get_object().get(members);
    if (begun != simdjson::SUCCESS) fail(QStringLiteral("An object is expected"));
    for (auto member : members) {
        ondemand::field field;
        std::string_view key;
        if (const auto fault = std::move(member).get(field); fault != simdjson::SUCCESS)
            fail(messageFor(fault));
        if (const auto fault = field.unescaped_key().get(key); fault != simdjson::SUCCESS)
            fail(messageFor(fault));
        m_state->path.push_back({key, std::nullopt});
        m_state->value = &field.value();
        onMember(key);
        m_state->path.pop_back();
    }
    m_state->value = outer;
}

void JsonReader::array(const std::function<void()>& onElement) {
    ondemand::value* const outer = m_state->value;
    ondemand::array elements;
    const auto begun =
        outer ? outer->get_array().get(elements) : m_state->document.get_array().get(elements);
    if (begun != simdjson::SUCCESS) fail(QStringLiteral("An array is expected"));
    qsizetype index = 0;
    for (auto element : elements) {
        ondemand::value value;
        if (const auto fault = element.get(value); fault != simdjson::SUCCESS)
            fail(messageFor(fault));
        m_state->path.push_back({{}, index++});
        m_state->value = &value;
        onElement();
        m_state->path.pop_back();
    }
    m_state->value = outer;
}

bool JsonReader::takeNull() {
    bool isNull = false;
    ondemand::value* const value = m_state->value;
    return value && value->is_null().get(isNull) == simdjson::SUCCESS && isNull;
}

double JsonReader::number() {
    double value = 0.0;
    if (!m_state->value || m_state->value->get_double().get(value) != simdjson::SUCCESS)
        fail(QStringLiteral("A number is expected"));
    return value;
}

int JsonReader::integer() {
    const double value = number();
    const bool fits = value >= std::numeric_limits<int>::min() &&
                      value <= std::numeric_limits<int>::max() && value == std::floor(value);
    if (!fits) fail(QStringLiteral("A whole number is expected"));
    return static_cast<int>(value);
}

bool JsonReader::boolean() {
    bool value = false;
    if (!m_state->value || m_state->value->get_bool().get(value) != simdjson::SUCCESS)
        fail(QStringLiteral("True or false is expected"));
    return value;
}

QString JsonReader::string() {
    std::string_view value;
    if (!m_state->value || m_state->value->get_string().get(value) != simdjson::SUCCESS)
        fail(QStringLiteral("A text is expected"));
    return textOf(value);
}

// The string that the reader stands at as it is spelled, escapes and all, without its quotes.
std::string_view JsonReader::stringToken() {
    std::string_view token;
    if (m_state->value) token = m_state->value->raw_json_token();
    const std::size_t end = token.find_last_not_of(" \t\r\n");
    token = token.substr(0, end == std::string_view::npos ? 0 : end + 1);
    if (token.size() < 2 || token.front() != '"' || token.back() != '"')
        fail(QStringLiteral("A text in base64 is expected"));
    return token.substr(1, token.size() - 2);
}

// What `use` makes of the base64 text that the reader stands at. The text is used in place; only
// where that fails, as it does for one with an escaped slash, its escapes are resolved first.
template <typename Use>
auto JsonReader::base64Text(Use use) {
    const std::string_view token = stringToken();
    auto result = use(token);
    if (!result && token.find('\\') != std::string_view::npos) {
        std::string_view resolved;
        if (m_state->value->get_string().get(resolved) == simdjson::SUCCESS) result = use(resolved);
    }
    return result;
}

// What was found; `fail`s without.
template <typename Value>
Value JsonReader::wellFormed(std::optional<Value> found) {
    if (!found) fail(QStringLiteral("The base64 is malformed"));
    return *std::move(found);
}

PngBytes JsonReader::pngBytes() {
    return wellFormed(
        base64Text([this](std::string_view text) { return m_interner->intern(text); }));
}

QByteArray JsonReader::bytes() {
    return wellFormed(bytesIfBase64());
}

std::optional<QByteArray> JsonReader::bytesIfBase64() {
    return base64Text([](std::string_view text) -> std::optional<QByteArray> {
        const auto size = base64::decodedLength(text);
        if (!size) return std::nullopt;
        QByteArray bytes;
        // Room for the bytes to be read as a document themselves.
        bytes.reserve(static_cast<qsizetype>(*size) + padding);
        bytes.resize(static_cast<qsizetype>(*size));
        if (!base64::decode(text, reinterpret_cast<std::uint8_t*>(bytes.data())))
            return std::nullopt;
        return bytes;
    });
}

void JsonReader::finish() {
    if (m_state->document.current_location().error() != simdjson::OUT_OF_BOUNDS)
        fail(QStringLiteral("Something follows the document"));
}

void JsonReader::fail(const QString& message) const {
    QString path;
    for (const Step& step : m_state->path) {
        if (step.index) {
            path += QStringLiteral("[%1]").arg(*step.index);
        } else {
            if (!path.isEmpty()) path += QLatin1Char('.');
            path += textOf(step.key);
        }
    }
    throw JsonError(message, path);
}

void JsonReader::failAtMember(std::string_view key, const QString& message) const {
    m_state->path.push_back({key, std::nullopt});
    fail(message);
}

} // namespace quillabrae::model
