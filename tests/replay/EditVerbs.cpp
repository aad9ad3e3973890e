// SPDX-License-Identifier: GPL-3.0-or-later
// Writing what is published, as the interface does: settings, and fields of the active project.
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/ScriptImages.h"
#include "replay/Session.h"
#include "replay/SettingFields.h"
#include "replay/Verb.h"

#include <QJsonArray>

#include <algorithm>

namespace quillabrae::replay {
namespace {

const SettingField* settingNamed(const QString& name) {
    const auto fields = settingFields();
    const auto found = std::ranges::find_if(
        fields, [&](const SettingField& field) { return name == QLatin1StringView(field.name); });
    return found == fields.end() ? nullptr : &*found;
}

QJsonValue set(Session& session, const Arguments& arguments) {
    model::PaintAppSettings settings = session.store().settings();
    std::optional<QUuid> activeProjectID = session.store().activeProjectID();
    for (const QString& key : arguments.line().keys()) {
        const QJsonValue value = arguments.line().value(key);
        if (key == QLatin1StringView("do")) continue;
        if (key == QLatin1StringView("activeProjectID"))
            activeProjectID = session.projectID(value, key);
        else if (const SettingField* field = settingNamed(key))
            field->write(settings, value);
        else
            throw ScriptError(QStringLiteral("no setting is called \"%1\"").arg(key));
    }
    session.store().editSettings([&](model::PaintAppSettings& present) { present = settings; });
    session.store().setActiveProjectID(activeProjectID);
    return {};
}

model::PixelSelection selectionFrom(const Session& session, const QJsonValue& value) {
    const QJsonObject form = objectFrom(value, QStringLiteral("pixelSelection"));
    const auto number = [&](const char* key) {
        return numberFrom(form.value(QLatin1StringView(key)), QLatin1StringView(key));
    };
    model::PixelSelection selection{number("x"), number("y"), number("width"), number("height"),
                                    std::nullopt};
    if (const QString mask = form.value(QStringLiteral("maskPNGData")).toString(); !mask.isEmpty())
        selection.maskPNGData = fileBytes(session, mask);
    return selection;
}

void patchLayer(model::PaintLayer& layer, const QJsonObject& patch) {
    for (const QString& key : patch.keys()) {
        const QJsonValue value = patch.value(key);
        if (key == QLatin1StringView("name"))
            layer.name = textFrom(value, key);
        else if (key == QLatin1StringView("isVisible"))
            layer.isVisible = booleanFrom(value, key);
        else if (key == QLatin1StringView("isLocked"))
            layer.isLocked = booleanFrom(value, key);
        else if (key == QLatin1StringView("opacity"))
            layer.opacity = numberFrom(value, key);
        else
            throw ScriptError(QStringLiteral("a layer has no field \"%1\" to patch").arg(key));
    }
}

void patchLayers(model::PaintProject& project, const QJsonArray& patches) {
    if (patches.size() > static_cast<qsizetype>(project.layers.size()))
        throw ScriptError(
            QStringLiteral("the project has only %1 layers").arg(project.layers.size()));
    for (qsizetype i = 0; i < patches.size(); ++i)
        patchLayer(project.layers[static_cast<std::size_t>(i)],
                   objectFrom(patches.at(i), QStringLiteral("layers")));
}

/// The size is the picture's and the layer the selected one where they are absent.
model::FloatingPixelSelection floatingFrom(const Session& session, const QJsonValue& value) {
    const QJsonObject form = objectFrom(value, QStringLiteral("floatingSelection"));
    const model::PastedImage image =
        pastedImageFrom(session, form.value(QStringLiteral("pngData")));
    const QJsonValue layer = form.value(QStringLiteral("layerID"));
    return {image.pngData, form.value(QStringLiteral("width")).toDouble(image.width),
            form.value(QStringLiteral("height")).toDouble(image.height),
            layer.isUndefined() ? session.activeProject().selectedLayerID
                                : session.layerID(layer, QStringLiteral("layerID"))};
}

struct ProjectField {
    const char* name;
    void (*write)(const Session&, model::PaintProject&, const QString& key, const QJsonValue&);
};

constexpr ProjectField projectFields[] = {
    {"title", [](const Session&, model::PaintProject& project, const QString& key,
                 const QJsonValue& value) { project.title = textFrom(value, key); }},
    {"canvasWidth", [](const Session&, model::PaintProject& project, const QString& key,
                       const QJsonValue& value) { project.canvasWidth = numberFrom(value, key); }},
    {"canvasHeight",
     [](const Session&, model::PaintProject& project, const QString& key, const QJsonValue& value) {
         project.canvasHeight = numberFrom(value, key);
     }},
    {"resolutionDPI",
     [](const Session&, model::PaintProject& project, const QString& key, const QJsonValue& value) {
         project.resolutionDPI = numberFrom(value, key);
     }},
    {"selectedLayerID",
     [](const Session& session, model::PaintProject& project, const QString& key,
        const QJsonValue& value) { project.selectedLayerID = session.layerID(value, key); }},
    {"isCanvasSelected",
     [](const Session&, model::PaintProject& project, const QString& key, const QJsonValue& value) {
         project.isCanvasSelected = booleanFrom(value, key);
     }},
    {"pixelSelection",
     [](const Session& session, model::PaintProject& project, const QString&,
        const QJsonValue& value) {
         project.pixelSelection.reset();
         if (!value.isNull()) project.pixelSelection = selectionFrom(session, value);
     }},
    {"floatingSelection",
     [](const Session& session, model::PaintProject& project, const QString&,
        const QJsonValue& value) {
         project.floatingSelection.reset();
         if (!value.isNull()) project.floatingSelection = floatingFrom(session, value);
     }},
    {"layers", [](const Session&, model::PaintProject& project, const QString& key,
                  const QJsonValue& value) { patchLayers(project, arrayFrom(value, key)); }},
};

QJsonValue project(Session& session, const Arguments& arguments) {
    model::PaintProject patched = session.activeProject();
    for (const QString& key : arguments.line().keys()) {
        if (key == QLatin1StringView("do")) continue;
        const auto field = std::ranges::find_if(projectFields, [&](const ProjectField& candidate) {
            return key == QLatin1StringView(candidate.name);
        });
        if (field == std::end(projectFields))
            throw ScriptError(QStringLiteral("a project has no field \"%1\" to patch").arg(key));
        field->write(session, patched, key, arguments.line().value(key));
    }
    session.store().editActiveProject([&](model::PaintProject& present) { present = patched; });
    return {};
}

QJsonValue loadLayer(Session& session, const Arguments& arguments) {
    const int index = arguments.integer("index");
    if (index < 0 || index >= static_cast<int>(session.activeProject().layers.size()))
        throw ScriptError(QStringLiteral("no layer at index %1").arg(index));
    const model::PngBytes bytes = fileBytes(session, arguments.text("path"));
    session.store().editActiveProject([&](model::PaintProject& present) {
        present.layers[static_cast<std::size_t>(index)].bitmapPNGData = bytes;
    });
    return {};
}

constexpr Verb verbs[] = {
    {"set", "...", set},
    {"project", "...", project},
    {"layer.load", "index path", loadLayer},
};

} // namespace

VerbTable editVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
