// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RecoverySessionCoding.h"

#include "model/JsonFields.h"

namespace quillabrae::model {
namespace {

using persistence::Fingerprints;
using persistence::PaintAutosaveSession;

// The fields have to be known by type before the specialisations of this file are used.
constexpr auto sessionFields = jsonFields(
    optional("activeProjectID", &PaintAutosaveSession::activeProjectID),
    defaulted("histories", &PaintAutosaveSession::histories),
    required("projects", &PaintAutosaveSession::projects),
    defaulted("savedAt", &PaintAutosaveSession::savedAt),
    defaulted("savedProjectFingerprints", &PaintAutosaveSession::savedProjectFingerprints));

std::optional<ProjectFingerprint> decodedFingerprint(QByteArray json,
                                                     std::shared_ptr<PngInterner> interner) {
    try {
        PaintProject project;
        JsonReader reader(std::move(json), std::move(interner));
        decodeOnto(project, reader);
        return ProjectFingerprint::of(project);
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

} // namespace

void JsonForm<Fingerprints>::write(JsonWriter& writer, const Fingerprints& values) {
    std::map<QByteArray, const ProjectFingerprint*> sorted;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        sorted.emplace(JsonForm<QUuid>::text(it.key()), &it.value());
    }
    writer.beginObject();
    for (const auto& entry : sorted) {
        const ProjectFingerprint& fingerprint = *entry.second;
        writer.key(std::string_view(entry.first.constData(),
                                    static_cast<std::size_t>(entry.first.size())));
        writer.base64Stream([&](ByteSink& sink) { encodeTo(sink, fingerprint.project()); });
    }
    writer.endObject();
}

void JsonForm<Fingerprints>::read(JsonReader& reader, Fingerprints& values) {
    values.clear();
    JsonForm<QHash<QUuid, QByteArray>>::readEach(reader, [&](const QUuid& id) {
        auto fingerprint = decodedFingerprint(reader.bytes(), reader.interner());
        if (fingerprint) values.insert(id, *std::move(fingerprint));
    });
}

void JsonForm<PaintAutosaveSession>::write(JsonWriter& writer,
                                           const PaintAutosaveSession& session) {
    writeFields(writer, session, sessionFields);
}

void JsonForm<PaintAutosaveSession>::read(JsonReader& reader, PaintAutosaveSession& session) {
    readFields(reader, session, sessionFields);
}

} // namespace quillabrae::model
