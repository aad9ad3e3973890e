// SPDX-License-Identifier: GPL-3.0-or-later
// The clipboard, drops, and pasting.
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/ScriptImages.h"
#include "replay/Session.h"
#include "replay/Verb.h"
#include "store/DroppedContents.h"

#include <QFile>
#include <QJsonArray>

namespace quillabrae::replay {
namespace {

using platform::MemoryPasteboard;

QJsonValue idOf(const std::optional<model::PaintProject>& project) {
    return project ? toJson(project->id) : QJsonValue();
}

/// An object whose keys are types and whose values are paths of files with the bytes.
std::vector<MemoryPasteboard::Item> itemsFrom(const Session& session, const QJsonObject& types) {
    std::vector<MemoryPasteboard::Item> items;
    for (const QString& type : types.keys())
        items.emplace_back(type,
                           fileBytes(session, textFrom(types.value(type), type)).toByteArray());
    return items;
}

QJsonValue putOnClipboard(Session& session, const Arguments& arguments) {
    session.pasteboard().put(
        itemsFrom(session, objectFrom(arguments.value("types"), QStringLiteral("types"))));
    return {};
}

void saveBytes(const Session& session, const QString& path, const QByteArray& bytes) {
    QFile file(session.resolvedPath(path));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw ScriptError(QStringLiteral("%1: %2").arg(path, file.errorString()));
}

QJsonValue getFromClipboard(Session& session, const Arguments& arguments) {
    const MemoryPasteboard& pasteboard = session.pasteboard();
    const QJsonObject wanted = arguments.has("save")
                                   ? objectFrom(arguments.value("save"), QStringLiteral("save"))
                                   : QJsonObject();
    for (const QString& type : wanted.keys()) {
        if (!pasteboard.types().contains(type))
            throw ScriptError(QStringLiteral("the clipboard has no \"%1\"").arg(type));
        saveBytes(session, textFrom(wanted.value(type), type), pasteboard.data(type));
    }
    return QJsonArray::fromStringList(pasteboard.types());
}

QJsonValue drop(Session& session, const Arguments& arguments) {
    std::vector<MemoryPasteboard::Item> items;
    QByteArray uris;
    const QJsonArray paths = arguments.has("paths")
                                 ? arrayFrom(arguments.value("paths"), QStringLiteral("paths"))
                                 : QJsonArray();
    for (const auto& path : paths)
        uris += platform::uriListOf(
            QUrl::fromLocalFile(session.resolvedPath(textFrom(path, QStringLiteral("paths")))));
    if (!uris.isEmpty()) items.emplace_back(platform::MimeTypes::uriList, uris);
    if (arguments.has("types")) {
        for (const auto& item :
             itemsFrom(session, objectFrom(arguments.value("types"), QStringLiteral("types"))))
            items.push_back(item);
    }
    MemoryPasteboard drag;
    drag.put(items);
    const auto target =
        arguments.text("on", QStringLiteral("editor")) == QLatin1StringView("welcome")
            ? store::DropTarget::welcome
            : store::DropTarget::editor;
    return idOf(session.store().acceptDrop(store::droppedContents(drag), target));
}

/// The Paste command in the editor window.
QJsonValue paste(Session& session, const Arguments&) {
    const auto image = session.store().imageOnClipboard();
    return image ? idOf(session.store().pasteImage(*image)) : QJsonValue();
}

QJsonValue pasteImageIntoActiveProject(Session& session, const Arguments& arguments) {
    return idOf(session.store().pasteImageIntoActiveProject(
        pastedImageFrom(session, arguments.value("image")), arguments.boolean("expandsCanvas")
                                                                ? store::PastedCanvas::expanded
                                                                : store::PastedCanvas::kept));
}

constexpr Verb verbs[] = {
    {"clipboard.put", "types", putOnClipboard},
    {"clipboard.get", "save?", getFromClipboard},
    {"drop", "paths? types? on?", drop},
    {"paste", "", paste},
    {"store.pasteImageIntoActiveProject", "image expandsCanvas", pasteImageIntoActiveProject},
};

} // namespace

VerbTable intakeVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
