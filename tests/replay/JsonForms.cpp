// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/JsonForms.h"

#include "raster/PngCodec.h"

#include <QCryptographicHash>
#include <QJsonArray>

namespace quillabrae::replay {

QJsonValue toJson(const model::ColorValue& color) {
    return QJsonArray{color.red, color.green, color.blue, color.alpha};
}

QJsonValue toJson(const QUuid& id) {
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QJsonValue toJson(const std::optional<QUrl>& url) {
    if (!url) return QJsonValue();
    return url->isLocalFile() ? url->toLocalFile() : url->toString();
}

QJsonValue toJson(const std::optional<model::PngBytes>& bytes) {
    if (!bytes) return QJsonValue();
    QJsonValue pixelSize;
    if (const auto size = raster::pngPixelSize(*bytes))
        pixelSize = QJsonArray{size->width(), size->height()};
    const QByteArray hash =
        QCryptographicHash::hash(bytes->toByteArray(), QCryptographicHash::Sha256).toHex();
    return QJsonObject{{QStringLiteral("bytes"), static_cast<qint64>(bytes->size())},
                       {QStringLiteral("size"), pixelSize},
                       {QStringLiteral("sha256"), QString::fromLatin1(hash)}};
}

QJsonValue toJson(const model::PaintLayer& layer) {
    return QJsonObject{{QStringLiteral("id"), toJson(layer.id)},
                       {QStringLiteral("name"), layer.name},
                       {QStringLiteral("isVisible"), layer.isVisible},
                       {QStringLiteral("isLocked"), layer.isLocked},
                       {QStringLiteral("opacity"), layer.opacity},
                       {QStringLiteral("bitmapPNGData"), toJson(layer.bitmapPNGData)}};
}

QJsonValue toJson(const std::optional<model::PixelSelection>& selection) {
    if (!selection) return QJsonValue();
    return QJsonObject{{QStringLiteral("x"), selection->x},
                       {QStringLiteral("y"), selection->y},
                       {QStringLiteral("width"), selection->width},
                       {QStringLiteral("height"), selection->height},
                       {QStringLiteral("maskPNGData"), toJson(selection->maskPNGData)}};
}

QJsonValue toJson(const model::PaintProject& project) {
    QJsonArray layers;
    for (const model::PaintLayer& layer : project.layers) layers.append(toJson(layer));
    QJsonValue floating;
    if (const auto& pixels = project.floatingSelection)
        floating = QJsonObject{{QStringLiteral("pngData"), toJson(std::optional(pixels->pngData))},
                               {QStringLiteral("width"), pixels->width},
                               {QStringLiteral("height"), pixels->height},
                               {QStringLiteral("layerID"), toJson(pixels->layerID)}};
    return QJsonObject{
        {QStringLiteral("id"), toJson(project.id)},
        {QStringLiteral("title"), project.title},
        {QStringLiteral("fileURL"), toJson(project.fileURL)},
        {QStringLiteral("canvasWidth"), project.canvasWidth},
        {QStringLiteral("canvasHeight"), project.canvasHeight},
        {QStringLiteral("resolutionDPI"), project.resolutionDPI},
        {QStringLiteral("selectedLayerID"), toJson(project.selectedLayerID)},
        {QStringLiteral("isCanvasSelected"), project.isCanvasSelected},
        {QStringLiteral("pixelSelection"), toJson(project.pixelSelection)},
        {QStringLiteral("floatingSelection"), floating},
        {QStringLiteral("layers"), layers},
        {QStringLiteral("lastModified"), project.lastModified.toString(Qt::ISODateWithMs)}};
}

QJsonValue toJson(const model::PaintHistoryState& history) {
    QJsonArray titles;
    QJsonArray symbols;
    for (const model::PaintHistoryEntry& entry : history.entries) {
        titles.append(entry.title);
        symbols.append(entry.symbolName);
    }
    return QJsonObject{{QStringLiteral("titles"), titles},
                       {QStringLiteral("symbols"), symbols},
                       {QStringLiteral("selectedIndex"), history.selectedIndex}};
}

QJsonValue toJson(const model::RecentProject& recent) {
    return QJsonObject{{QStringLiteral("title"), recent.title},
                       {QStringLiteral("url"), toJson(std::optional(recent.url))},
                       {QStringLiteral("openedAt"), recent.openedAt.toString(Qt::ISODateWithMs)}};
}

} // namespace quillabrae::replay
