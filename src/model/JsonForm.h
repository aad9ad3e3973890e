// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/JsonReader.h"
#include "model/JsonWriter.h"
#include "model/PngBytes.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <map>
#include <optional>
#include <utility>
#include <vector>

/// How a value of each type stands in a JSON document: `JsonForm<T>` has
/// `write(JsonWriter&, const T&)` and `read(JsonReader&, T&)`, both of which throw JsonError.
namespace quillabrae::model {

template <typename T>
struct JsonForm;

template <>
struct JsonForm<double> {
    static void write(JsonWriter& writer, double value) { writer.number(value); }
    static void read(JsonReader& reader, double& value) { value = reader.number(); }
};

template <>
struct JsonForm<int> {
    static void write(JsonWriter& writer, int value) { writer.integer(value); }
    static void read(JsonReader& reader, int& value) { value = reader.integer(); }
};

template <>
struct JsonForm<bool> {
    static void write(JsonWriter& writer, bool value) { writer.boolean(value); }
    static void read(JsonReader& reader, bool& value) { value = reader.boolean(); }
};

template <>
struct JsonForm<QString> {
    static void write(JsonWriter& writer, const QString& value) { writer.string(value); }
    static void read(JsonReader& reader, QString& value) { value = reader.string(); }
};

template <>
struct JsonForm<PngBytes> {
    static void write(JsonWriter& writer, const PngBytes& value) { writer.base64(value.bytes()); }
    static void read(JsonReader& reader, PngBytes& value) { value = reader.pngBytes(); }
};

/// Upper-case text of 36 characters; read in any case.
template <>
struct JsonForm<QUuid> {
    static QByteArray text(const QUuid& value);
    static std::optional<QUuid> fromText(QStringView text);
    static void write(JsonWriter& writer, const QUuid& value);
    static void read(JsonReader& reader, QUuid& value);
};

/// The absolute text of a URL.
template <>
struct JsonForm<QUrl> {
    static void write(JsonWriter& writer, const QUrl& value);
    static void read(JsonReader& reader, QUrl& value);
};

/// ISO 8601 in UTC to the second, as in "2024-02-29T23:59:58Z". Fractions of a second are dropped
/// on writing; on reading a fraction to the millisecond and other offsets are understood.
template <>
struct JsonForm<QDateTime> {
    static std::optional<QDateTime> fromText(QStringView text);
    static void write(JsonWriter& writer, const QDateTime& value);
    static void read(JsonReader& reader, QDateTime& value);
};

template <typename T>
struct JsonForm<std::vector<T>> {
    static void write(JsonWriter& writer, const std::vector<T>& values) {
        writer.beginArray();
        for (const T& value : values) JsonForm<T>::write(writer, value);
        writer.endArray();
    }

    static void read(JsonReader& reader, std::vector<T>& values) {
        values.clear();
        reader.array([&] {
            T value{};
            JsonForm<T>::read(reader, value);
            values.push_back(std::move(value));
        });
    }
};

/// An object whose keys are the identifiers' texts, sorted.
template <typename T>
struct JsonForm<QHash<QUuid, T>> {
    static void write(JsonWriter& writer, const QHash<QUuid, T>& values) {
        std::map<QByteArray, const T*> sorted;
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            sorted.emplace(JsonForm<QUuid>::text(it.key()), &it.value());
        }
        writer.beginObject();
        for (const auto& [key, value] : sorted) {
            writer.key(std::string_view(key.constData(), static_cast<std::size_t>(key.size())));
            JsonForm<T>::write(writer, *value);
        }
        writer.endObject();
    }

    static void read(JsonReader& reader, QHash<QUuid, T>& values) {
        values.clear();
        readEach(reader, [&](const QUuid& key) {
            if (values.contains(key)) reader.fail(QStringLiteral("The key stands twice"));
            T value{};
            JsonForm<T>::read(reader, value);
            values.insert(key, std::move(value));
        });
    }

    /// Calls `onMember` for each member, with the reader standing at its value.
    template <typename OnMember>
    static void readEach(JsonReader& reader, OnMember onMember) {
        reader.object([&](std::string_view text) {
            const auto key = JsonForm<QUuid>::fromText(
                QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
            if (!key) reader.fail(QStringLiteral("The key is no identifier"));
            onMember(*key);
        });
    }
};

/// A case of a closed vocabulary as its raw text.
template <typename Case, std::optional<Case> (*fromRawText)(QStringView)>
struct VocabularyJsonForm {
    static void write(JsonWriter& writer, Case value) { writer.string(rawText(value)); }
    static void read(JsonReader& reader, Case& value) {
        const QString text = reader.string();
        const std::optional<Case> found = fromRawText(text);
        if (!found) reader.fail(QStringLiteral("“%1” is not known").arg(text.left(64)));
        value = *found;
    }
};

} // namespace quillabrae::model
