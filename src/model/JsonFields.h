// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/JsonForm.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>

/// Records as JSON objects, by one table of fields for both directions:
///
///     constexpr auto fields = jsonFields(required("x", &CanvasPoint::x),
///                                        required("y", &CanvasPoint::y));
namespace quillabrae::model {

/// What a missing key means on reading: a fault, or that the member keeps the value it has. A
/// member of type std::optional may always be missing, is then absent, and writes no key.
enum class Presence { required, defaulted };

template <typename Record, typename Member>
struct JsonField {
    std::string_view name;
    Member Record::*member;
    Presence presence = Presence::required;
};

template <typename Record, typename Member>
constexpr JsonField<Record, Member> required(std::string_view name, Member Record::*member) {
    return {name, member, Presence::required};
}

template <typename Record, typename Member>
constexpr JsonField<Record, Member> defaulted(std::string_view name, Member Record::*member) {
    return {name, member, Presence::defaulted};
}

template <typename Record, typename Member>
constexpr JsonField<Record, std::optional<Member>> optional(std::string_view name,
                                                            std::optional<Member> Record::*member) {
    return {name, member, Presence::defaulted};
}

/// A table of fields, which have to stand in the order of their names.
template <typename... Fields>
consteval std::tuple<Fields...> jsonFields(Fields... fields) {
    const std::array<std::string_view, sizeof...(Fields)> names{fields.name...};
    if (!std::ranges::is_sorted(names)) throw "fields are not sorted by name";
    return {fields...};
}

template <typename Record, typename Member>
void writeField(JsonWriter& writer, const Record& record, const JsonField<Record, Member>& field) {
    writer.key(field.name);
    JsonForm<Member>::write(writer, record.*field.member);
}

template <typename Record, typename Member>
void writeField(JsonWriter& writer, const Record& record,
                const JsonField<Record, std::optional<Member>>& field) {
    const std::optional<Member>& value = record.*field.member;
    if (!value) return;
    writer.key(field.name);
    JsonForm<Member>::write(writer, *value);
}

template <typename Record, typename Member>
void readField(JsonReader& reader, Record& record, const JsonField<Record, Member>& field) {
    if (field.presence == Presence::defaulted && reader.takeNull()) return;
    JsonForm<Member>::read(reader, record.*field.member);
}

template <typename Record, typename Member>
void readField(JsonReader& reader, Record& record,
               const JsonField<Record, std::optional<Member>>& field) {
    std::optional<Member>& value = record.*field.member;
    value.reset();
    if (reader.takeNull()) return;
    JsonForm<Member>::read(reader, value.emplace());
}

/// Writes the record as an object.
template <typename Record, typename... Fields>
void writeFields(JsonWriter& writer, const Record& record, const std::tuple<Fields...>& fields) {
    writer.beginObject();
    std::apply([&](const auto&... field) { (writeField(writer, record, field), ...); }, fields);
    writer.endObject();
}

/// Reads an object onto the record. Keys that name no field are passed over.
template <typename Record, typename... Fields>
void readFields(JsonReader& reader, Record& record, const std::tuple<Fields...>& fields) {
    std::array<bool, sizeof...(Fields)> seen{};
    reader.object([&](std::string_view key) {
        std::size_t index = 0;
        const auto readIfNamed = [&](const auto& field) {
            bool& isSeen = seen[index++];
            if (field.name != key) return false;
            if (isSeen) reader.fail(QStringLiteral("The key stands twice"));
            isSeen = true;
            readField(reader, record, field);
            return true;
        };
        std::apply([&](const auto&... field) { (readIfNamed(field) || ...); }, fields);
    });
    std::size_t index = 0;
    const auto checkPresence = [&](const auto& field) {
        if (!seen[index++] && field.presence == Presence::required)
            reader.failAtMember(field.name, QStringLiteral("A value is missing"));
    };
    std::apply([&](const auto&... field) { (checkPresence(field), ...); }, fields);
}

} // namespace quillabrae::model
