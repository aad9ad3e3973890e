// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/EngineArguments.h"

#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"
#include "replay/ScriptImages.h"
#include "replay/Session.h"

#include <QFile>
#include <QJsonArray>

#include <array>

namespace quillabrae::replay {
namespace {

template <typename Case>
Case caseFrom(std::optional<Case> (*read)(QStringView), const QJsonValue& value,
              const QString& what) {
    const QString text = textFrom(value, what);
    const std::optional<Case> found = read(text);
    if (!found) throw ScriptError(QStringLiteral("\"%1\": unknown value \"%2\"").arg(what, text));
    return *found;
}

struct StrokeField {
    const char* name;
    void (*read)(model::PaintStroke&, const QJsonValue&, const QString& what);
};

constexpr StrokeField strokeFields[] = {
    {"tool",
     [](model::PaintStroke& stroke, const QJsonValue& value, const QString& what) {
         stroke.tool = caseFrom(model::paintToolFromRawText, value, what);
     }},
    {"color", [](model::PaintStroke& stroke, const QJsonValue& value,
                 const QString& what) { stroke.color = colorFrom(value, what); }},
    {"secondaryColor", [](model::PaintStroke& stroke, const QJsonValue& value,
                          const QString& what) { stroke.secondaryColor = colorFrom(value, what); }},
    {"lineWidth", [](model::PaintStroke& stroke, const QJsonValue& value,
                     const QString& what) { stroke.lineWidth = numberFrom(value, what); }},
    {"hardness", [](model::PaintStroke& stroke, const QJsonValue& value,
                    const QString& what) { stroke.hardness = numberFrom(value, what); }},
    {"points",
     [](model::PaintStroke& stroke, const QJsonValue& value, const QString& what) {
         for (const QJsonArray list = arrayFrom(value, what); const auto& item : list) {
             const QPointF point = pointFrom(item, what);
             stroke.points.push_back({point.x(), point.y()});
         }
     }},
    {"shape",
     [](model::PaintStroke& stroke, const QJsonValue& value, const QString& what) {
         stroke.shape = caseFrom(model::canvasShapeFromRawText, value, what);
     }},
    {"shapeDrawingMode",
     [](model::PaintStroke& stroke, const QJsonValue& value, const QString& what) {
         stroke.shapeDrawingMode = caseFrom(model::shapeDrawingModeFromRawText, value, what);
     }},
};

const StrokeField& strokeFieldNamed(const QString& name) {
    for (const StrokeField& field : strokeFields) {
        if (name == QLatin1StringView(field.name)) return field;
    }
    throw ScriptError(QStringLiteral("a stroke has no field \"%1\"").arg(name));
}

} // namespace

std::optional<model::PngBytes> bytesFrom(const Session& session, const Arguments& arguments,
                                         const char* key) {
    if (!arguments.has(key) || arguments.value(key).isNull()) return std::nullopt;
    return fileBytes(session, arguments.text(key));
}

model::PaintLayer layerFrom(const Session& session, const Arguments& arguments, const char* key) {
    model::PaintLayer layer;
    const QJsonValue value = arguments.value(key);
    if (!value.isObject()) {
        layer.bitmapPNGData = bytesFrom(session, arguments, key);
        return layer;
    }
    const Arguments form(value.toObject());
    layer.bitmapPNGData = bytesFrom(session, form, "path");
    layer.opacity = form.number("opacity", 1.0);
    return layer;
}

raster::RasterImage imageFrom(const Session& session, const Arguments& arguments, const char* key) {
    const std::optional<model::PngBytes> bytes = bytesFrom(session, arguments, key);
    return bytes ? raster::decodePng(*bytes) : raster::RasterImage();
}

std::optional<model::PixelSelection> selectionFrom(const Session& session,
                                                   const Arguments& arguments, const char* key) {
    if (!arguments.has(key) || arguments.value(key).isNull()) return std::nullopt;
    const Arguments form(objectFrom(arguments.value(key), QLatin1StringView(key)));
    return model::PixelSelection{form.number("x"), form.number("y"), form.number("width"),
                                 form.number("height"), bytesFrom(session, form, "mask")};
}

QRectF rectFrom(const Arguments& arguments, const char* key) {
    return rectFrom(arguments.value(key), QLatin1StringView(key));
}

model::ColorValue colorFrom(const Arguments& arguments, const char* key) {
    return colorFrom(arguments.value(key), QLatin1StringView(key));
}

model::PaintStroke strokeFrom(const Arguments& arguments, const char* key) {
    const QJsonObject form = objectFrom(arguments.value(key), QLatin1StringView(key));
    for (const char* needed : {"tool", "points"}) {
        if (!form.contains(QLatin1StringView(needed)))
            throw ScriptError(
                QStringLiteral("a stroke needs \"%1\"").arg(QLatin1StringView(needed)));
    }
    model::PaintStroke stroke;
    stroke.color = {0.0, 0.0, 0.0, 1.0};
    for (const QString& name : form.keys())
        strokeFieldNamed(name).read(stroke, form.value(name), name);
    return stroke;
}

QJsonValue pixelResult(const Session& session, const Arguments& arguments,
                       const std::optional<model::PngBytes>& bytes) {
    if (!arguments.has("to")) return toJson(bytes);
    QFile file(session.resolvedPath(arguments.text("to")));
    if (!bytes) {
        file.remove();
    } else if (!file.open(QIODevice::WriteOnly) ||
               file.write(bytes->toByteArray()) != static_cast<qint64>(bytes->size())) {
        throw ScriptError(QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
    }
    return toJson(bytes);
}

QJsonValue pixelResult(const Session& session, const Arguments& arguments,
                       const raster::RasterImage& image) {
    return pixelResult(session, arguments, raster::LayerRasterService::pngData(image));
}

QJsonValue pixelResult(const Session& session, const Arguments& arguments,
                       const model::PaintLayer& layer) {
    return pixelResult(session, arguments, layer.bitmapPNGData);
}

QJsonValue selectionResult(const Session& session, const Arguments& arguments,
                           const std::optional<model::PixelSelection>& selection) {
    pixelResult(session, arguments, selection ? selection->maskPNGData : std::nullopt);
    return toJson(selection);
}

QJsonValue rectResult(const QRectF& rect) {
    return QJsonArray{rect.x(), rect.y(), rect.width(), rect.height()};
}

} // namespace quillabrae::replay
