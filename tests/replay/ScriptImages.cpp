// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/ScriptImages.h"

#include "persistence/ImageLoader.h"
#include "raster/DecodeCache.h"
#include "replay/Arguments.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"

#include <QFile>

namespace quillabrae::replay {

model::PastedImage pastedImageFrom(const Session& session, const QJsonValue& value) {
    const QJsonObject form =
        value.isObject() ? value.toObject() : QJsonObject{{QStringLiteral("path"), value}};
    const QString path = textFrom(form.value(QStringLiteral("path")), QStringLiteral("path"));
    const auto image = persistence::loadImageFile(session.resolvedPath(path));
    if (!image) throw ScriptError(QStringLiteral("no picture can be read from %1").arg(path));
    model::PastedImage pasted{raster::encodedImage(*image), double(image->width()),
                              double(image->height()), std::nullopt, std::nullopt};
    if (form.contains(QStringLiteral("sourceX")))
        pasted.sourceX =
            numberFrom(form.value(QStringLiteral("sourceX")), QStringLiteral("sourceX"));
    if (form.contains(QStringLiteral("sourceY")))
        pasted.sourceY =
            numberFrom(form.value(QStringLiteral("sourceY")), QStringLiteral("sourceY"));
    return pasted;
}

model::PngBytes fileBytes(const Session& session, const QString& path) {
    QFile file(session.resolvedPath(path));
    if (!file.open(QIODevice::ReadOnly))
        throw ScriptError(QStringLiteral("%1: %2").arg(path, file.errorString()));
    return model::PngBytes(file.readAll());
}

} // namespace quillabrae::replay
