// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace quillabrae::model {

class PngInterner;

/// Reads one JSON document in a single pass, value by value.
///
/// The reader stands at a value. Each accessor either takes that value or throws JsonError with the
/// path of the fault; a value that nobody takes is skipped. Within the callbacks of `object` and
/// `array` the reader stands at the member's or the element's value. Whatever the bytes are, the
/// memory taken is a small multiple of their length, and nesting costs no stack.
class JsonReader {
public:
    /// A document that is moved in and has this much capacity beyond its size is not copied.
    static constexpr qsizetype padding = 64;

    explicit JsonReader(QByteArray json);
    /// Reads in place. `padding` bytes behind `json` can be read as well and are zero, and all of
    /// it outlives the reader.
    explicit JsonReader(std::string_view json);
    /// Shares pictures with other documents that were read with the same interner.
    JsonReader(QByteArray json, std::shared_ptr<PngInterner> interner);
    ~JsonReader();
    JsonReader(const JsonReader&) = delete;
    JsonReader& operator=(const JsonReader&) = delete;

    void object(const std::function<void(std::string_view key)>& onMember);
    void array(const std::function<void()>& onElement);
    /// Takes the value when it is null.
    bool takeNull();
    /// Finite.
    double number();
    /// A number without fraction in the range of int.
    int integer();
    bool boolean();
    QString string();
    /// A string of base64.
    PngBytes pngBytes();
    QByteArray bytes();
    /// The bytes of a string; nothing when it is not base64.
    std::optional<QByteArray> bytesIfBase64();

    /// Throws unless nothing follows the document.
    void finish();

    /// Throws JsonError for the value that the reader stands at, or for a member of it.
    [[noreturn]] void fail(const QString& message) const;
    [[noreturn]] void failAtMember(std::string_view key, const QString& message) const;

    const std::shared_ptr<PngInterner>& interner() const { return m_interner; }

private:
    struct State;

    std::string_view stringToken();
    template <typename Use>
    auto base64Text(Use use);
    template <typename Value>
    Value wellFormed(std::optional<Value> found);
    void begin();

    std::shared_ptr<PngInterner> m_interner;
    std::unique_ptr<State> m_state;
};

} // namespace quillabrae::model
