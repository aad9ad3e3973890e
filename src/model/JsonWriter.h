// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ByteSink.h"

#include <QString>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillabrae::model {

/// Writes one JSON document to a sink as a stream, pretty-printed with two spaces.
///
/// Keys come out in the order in which they are given; whoever writes an object gives them sorted.
/// A value that JSON cannot say raises JsonError with the path of the fault. `finish` has to be
/// called at the end.
class JsonWriter {
public:
    /// `sink` outlives the writer.
    explicit JsonWriter(ByteSink& sink);

    void beginObject() { begin('{', Container::object); }
    void endObject() { end('}'); }
    void beginArray() { begin('[', Container::array); }
    void endArray() { end(']'); }
    /// The key of the value that follows. `name` is plain ASCII that needs no escape, and stays
    /// readable until that value is written.
    void key(std::string_view name);

    /// Finite; in the shortest text that reads back as the same double.
    void number(double value);
    void integer(qint64 value);
    void boolean(bool value);
    /// Half of a surrogate pair is written as the replacement character.
    void string(const QString& text);
    /// A string of ASCII that needs no escape.
    void plainString(std::string_view text);
    /// A string that holds `bytes` as base64.
    void base64(std::span<const std::uint8_t> bytes);
    /// A string that holds as base64 whatever `write` puts into its sink.
    void base64Stream(const std::function<void(ByteSink&)>& write);

    /// Ends the document: hands the sink all that is still held back.
    void finish() { flush(); }

    /// Throws JsonError for the value that is being written.
    [[noreturn]] void fail(const QString& message) const;

private:
    enum class Container { object, array };
    struct Level {
        Container container;
        qsizetype count = 0;
        std::string_view key;
    };

    void begin(char bracket, Container container);
    void end(char bracket);
    void beginValue();
    void newLine();
    void put(std::string_view text);
    void flush();

    ByteSink& m_sink;
    std::string m_buffer;
    std::vector<Level> m_levels;
};

} // namespace quillabrae::model
