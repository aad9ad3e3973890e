// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/RecordCoding.h"
#include "persistence/RecoverySession.h"

namespace quillabrae::model {

/// Fingerprints stand in a document as the base64 of their own encoded bytes, by identifier. One
/// whose bytes are no project is passed over on reading, so that its project counts as unsaved.
template <>
struct JsonForm<persistence::Fingerprints> {
    static void write(JsonWriter& writer, const persistence::Fingerprints& values);
    static void read(JsonReader& reader, persistence::Fingerprints& values);
};

/// On reading, `projects` is required; what else is missing keeps the value that it has.
template <>
struct JsonForm<persistence::PaintAutosaveSession> {
    static void write(JsonWriter& writer, const persistence::PaintAutosaveSession& session);
    static void read(JsonReader& reader, persistence::PaintAutosaveSession& session);
};

} // namespace quillabrae::model
