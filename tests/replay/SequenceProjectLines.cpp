// SPDX-License-Identifier: GPL-3.0-or-later
// Lines that change a project by commands: history, layers, selections, pictures, dialogs.
#include "replay/SequenceLines.h"
#include "replay/SequenceWriter.h"
#include "replay/Session.h"

#include <QStringList>

#include <algorithm>

namespace quillabrae::replay::lines {
namespace {

QString layerCount(const Session& session) {
    const model::PaintProject* project = session.store().activeProject();
    return QString::number(project == nullptr ? 0 : project->layers.size());
}

} // namespace

void undo(SequenceWriter& writer, Session&) {
    for (int times = writer.whole(1, 3); times > 0; --times)
        writer.add(R"({"do": "store.undo", "projectID": "active"})");
}

void redo(SequenceWriter& writer, Session&) {
    writer.add(R"({"do": "store.redo", "projectID": "active"})");
}

void undoAndRedo(SequenceWriter& writer, Session&) {
    writer.add(R"({"do": "store.undo", "projectID": "active"})");
    writer.add(R"({"do": "store.redo", "projectID": "active"})");
}

void restoreHistory(SequenceWriter& writer, Session& session) {
    const auto& projects = session.store().openProjects();
    if (projects.empty()) return;
    const int tab = writer.whole(0, static_cast<int>(projects.size()) - 1);
    const auto& entries =
        session.store().history(projects[static_cast<std::size_t>(tab)].id).entries;
    writer.add(QStringLiteral(R"({"do": "store.restoreHistory", "projectID": %1, "entryID": %2})")
                   .arg(tab)
                   .arg(writer.whole(0, std::max(static_cast<int>(entries.size()) - 1, 0))));
}

void layerCommand(SequenceWriter& writer, Session& session) {
    const QString last = QString::number(std::max(layerCount(session).toInt() - 1, 0));
    switch (writer.whole(0, 4)) {
        case 0:
            return writer.add(QStringLiteral(R"({"do": "store.moveSelectedLayer", "by": %1})")
                                  .arg(writer.chance(50) ? 1 : -1));
        case 1:
            return writer.add(QStringLiteral(R"({"do": "store.flattenLayerDown", "layerID": %1})")
                                  .arg(writer.whole(0, last.toInt())));
        case 2:
            return writer.add(
                QStringLiteral(
                    R"({"do": "store.applySelectedLayerProperties", "result": {"name": "L", "opacity": %1, "isVisible": %2, "isLocked": %3}})")
                    .arg(writer.number(0, 1),
                         writer.chance(75) ? QStringLiteral("true") : QStringLiteral("false"),
                         writer.chance(25) ? QStringLiteral("true") : QStringLiteral("false")));
        case 3:
            writer.add(R"({"do": "answer", "prompt": "importImage", "with": "~/b.png"})");
            return writer.addCommand({"importLayerFromFile"});
        default:
            // Not too many layers, or every later step takes long.
            if (last.toInt() > 3) return writer.addCommand({"deleteSelectedLayer"});
            return writer.addCommand({"addLayer", "duplicateSelectedLayer", "deleteSelectedLayer"});
    }
}

/// As the layers panel does it: choosing a layer, its eye, its lock.
void layerPatch(SequenceWriter& writer, Session& session) {
    const int count = layerCount(session).toInt();
    if (count == 0) return;
    const int index = writer.whole(0, count - 1);
    if (writer.chance(60))
        return writer.add(QStringLiteral(R"({"do": "project", "selectedLayerID": %1})").arg(index));
    QStringList patches(index, QStringLiteral("{}"));
    patches << QStringLiteral(R"({"%1": %2})")
                   .arg(writer.oneOf({"isVisible", "isLocked"}), writer.flag());
    writer.add(QStringLiteral(R"({"do": "project", "layers": [%1]})")
                   .arg(patches.join(QStringLiteral(", "))));
}

void selectionCommand(SequenceWriter& writer, Session&) {
    writer.addCommand({"selectAllCanvas", "dropSelection", "dropSelection",
                       "copySelectedCanvasPixels", "copySelectedCanvasPixels",
                       "cutSelectedCanvasPixels"});
}

void paste(SequenceWriter& writer, Session&) {
    if (writer.chance(20)) {
        writer.add(QStringLiteral(R"({"do": "clipboard.put", "types": {"image/png": "~/%1.png"}})")
                       .arg(writer.oneOf({"a", "b"})));
    }
    // The answer waits for a picture that does not fit.
    writer.add(QStringLiteral(R"({"do": "answer", "prompt": "paste", "with": "%1"})")
                   .arg(writer.oneOf(
                       {"openAsNewProject", "expandCanvas", "keepCanvasSize", "keepCanvasSize"})));
    writer.add(writer.chance(80) ? R"({"do": "paste"})"
                                 : R"({"do": "drop", "paths": ["~/b.png"]})");
    if (writer.chance(60)) writer.add(R"({"do": "set", "selectedTool": "moveSelectedPixels"})");
}

void transform(SequenceWriter& writer, Session&) {
    switch (writer.whole(0, 6)) {
        case 0:
            return writer.add(
                QStringLiteral(
                    R"({"do": "store.resizeActiveImage", "to": {"width": %1, "height": %2}})")
                    .arg(writer.whole(1, 100))
                    .arg(writer.whole(1, 80)));
        case 1:
            return writer.add(
                QStringLiteral(
                    R"({"do": "store.resizeActiveCanvas", "to": {"width": %1, "height": %2, "anchor": "%3"}})")
                    .arg(writer.whole(1, 100))
                    .arg(writer.whole(1, 80))
                    .arg(writer.oneOf({"center", "topLeft", "bottomRight", "left", "top"})));
        case 2:
            return writer.add(
                QStringLiteral(
                    R"({"do": "store.rotateZoomSelectedLayer", "result": {"angleDegrees": %1, "zoomPercentage": %2}})")
                    .arg(writer.number(-180, 180), writer.number(10, 300)));
        case 3:
            return writer.add(
                QStringLiteral(R"({"do": "store.flipSelectedLayer", "horizontal": %1})")
                    .arg(writer.flag()));
        case 4:
            return writer.addCommand({"trimTransparentWhitespace"});
        default:
            return writer.addCommand({"invertActiveImage", "repeatLastAction"});
    }
}

/// A dialog from its opening to its end: nothing else runs meanwhile.
void adjustment(SequenceWriter& writer, Session&) {
    const auto align = [&](const char* operation) {
        writer.add(
            QStringLiteral(R"({"do": "store.%1", "action": "%2"})")
                .arg(QLatin1StringView(operation),
                     writer.oneOf({"topLeft", "center", "bottomRight", "horizontalCenter"})));
    };
    const auto removal = [&] {
        writer.add(
            QStringLiteral(
                R"({"do": "store.previewColorRemoval", "settings": {"preset": "%1", "tolerancePercentage": %2, "transparentAlphaThresholdPercentage": %3}})")
                .arg(writer.oneOf({"white", "primary", "red"}), writer.number(0, 100),
                     writer.number(0, 100)));
    };
    const bool aligns = writer.chance(50);
    writer.addCommand({aligns ? "beginAlignObjectPreview" : "beginColorRemovalPreview"});
    for (int tries = writer.whole(0, 3); tries > 0; --tries) {
        if (aligns)
            align("previewAlignObject");
        else
            removal();
    }
    const char* end = writer.chance(60)
                          ? (aligns ? "commitAlignObjectPreview" : "commitColorRemovalPreview")
                          : (aligns ? "cancelAlignObjectPreview" : "cancelColorRemovalPreview");
    writer.addCommand({end});
}

/// A fill that is asked for, and what the service says to it, often after something else.
void generativeFill(SequenceWriter& writer, Session&) {
    if (writer.chance(60)) {
        writer.add(R"({"do": "service.key", "is": "sk-1"})");
        if (writer.chance(50)) writer.addCommand({"selectAllCanvas"});
        writer.add(R"({"do": "store.performGenerativeFill", "request": {"prompt": "a boat"}})");
    }
    if (writer.chance(30)) return;
    switch (writer.whole(0, 4)) {
        case 0:
            return writer.add(R"({"do": "service.answer", "failure": "no route"})");
        case 1:
            return writer.add(R"({"do": "service.answer", "status": 500, "body": "{}"})");
        case 2:
            return writer.add(QStringLiteral(R"({"do": "store.cancelGenerativeFill", "id": %1})")
                                  .arg(writer.whole(1, 9)));
        default:
            return writer.add(QStringLiteral(R"({"do": "service.answer", "picture": "~/%1.png"})")
                                  .arg(writer.oneOf({"a", "b"})));
    }
}

} // namespace quillabrae::replay::lines
