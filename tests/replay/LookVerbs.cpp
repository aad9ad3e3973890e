// SPDX-License-Identifier: GPL-3.0-or-later
// Looking at what a script has done, and comparing it.
#include "raster/PngCodec.h"
#include "replay/Pictures.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/StateFields.h"
#include "replay/Verb.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <array>
#include <cstdlib>

namespace quillabrae::replay {
namespace {

QString printed(const QJsonValue& value) {
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}

QJsonValue state(Session& session, const Arguments& arguments) {
    if (!arguments.has("of")) return stateOf(session);
    return stateAt(session, arguments.text("of"));
}

QJsonValue expect(Session& session, const Arguments& arguments) {
    const QString path = arguments.text("that");
    const QJsonValue found = stateAt(session, path);
    const QJsonValue expected = arguments.value("is");
    if (found != expected)
        throw ScriptError(
            QStringLiteral("%1 is %2, not %3").arg(path, printed(found), printed(expected)));
    return {};
}

std::array<int, 4> straightPixel(const raster::RasterImage& image, int x, int y) {
    const QRgb pixel = qUnpremultiply(image.toQImage().pixel(x, y));
    return {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)};
}

QJsonValue expectPixel(Session& session, const Arguments& arguments) {
    const raster::RasterImage image = pictureNamedBy(session, arguments);
    const QPoint at = arguments.point("at").toPoint();
    if (at.x() < 0 || at.y() < 0 || at.x() >= image.width() || at.y() >= image.height())
        throw ScriptError(QStringLiteral("(%1, %2) is outside the picture of %3 by %4")
                              .arg(at.x())
                              .arg(at.y())
                              .arg(image.width())
                              .arg(image.height()));
    const auto found = straightPixel(image, at.x(), at.y());
    const QJsonArray expected = arrayFrom(arguments.value("is"), QStringLiteral("is"));
    const int within = arguments.integer("within", 0);
    bool isEqual = expected.size() == 4;
    QJsonArray shown;
    for (std::size_t i = 0; i < found.size(); ++i) {
        shown.append(found[i]);
        if (isEqual)
            isEqual =
                std::abs(integerFrom(expected.at(static_cast<qsizetype>(i)), QStringLiteral("is")) -
                         found[i]) <= within;
    }
    if (!isEqual)
        throw ScriptError(
            QStringLiteral("the pixel is %1, not %2").arg(printed(shown), printed(expected)));
    return {};
}

QJsonValue savePicture(Session& session, const Arguments& arguments) {
    const model::PngBytes bytes = raster::encodePng(pictureNamedBy(session, arguments));
    QFile file(session.resolvedPath(arguments.text("to")));
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(bytes.toByteArray()) != static_cast<qint64>(bytes.size()))
        throw ScriptError(QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
    return {};
}

constexpr Verb verbs[] = {
    {"state", "of?", state},
    {"expect", "that is", expect},
    {"expect.pixel", "of index? path? at is within?", expectPixel},
    {"save.picture", "of index? path? to", savePicture},
};

} // namespace

VerbTable lookVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
