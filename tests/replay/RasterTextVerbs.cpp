// SPDX-License-Identifier: GPL-3.0-or-later
// The engine alone: text.
#include "raster/LayerRasterServiceText.h"
#include "raster/TextLayout.h"
#include "replay/EngineArguments.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QJsonArray>

namespace quillabrae::replay {
namespace {

bool flag(const Arguments& arguments, const char* key) {
    return arguments.has(key) && arguments.boolean(key);
}

model::CanvasTextAlignment alignmentFrom(const Arguments& arguments) {
    const QString text = arguments.text("alignment", QStringLiteral("left"));
    const auto alignment = model::canvasTextAlignmentFromRawText(text);
    if (!alignment) throw ScriptError(QStringLiteral("unknown alignment \"%1\"").arg(text));
    return *alignment;
}

raster::TextStyle styleFrom(const Arguments& arguments) {
    return {.fontFamily = arguments.text("fontFamily"),
            .isBold = flag(arguments, "isBold"),
            .isItalic = flag(arguments, "isItalic"),
            .isUnderlined = flag(arguments, "isUnderlined"),
            .isStruckThrough = flag(arguments, "isStruckThrough"),
            .alignment = alignmentFrom(arguments),
            .fontSize = arguments.number("fontSize")};
}

QJsonValue drawText(Session& session, const Arguments& arguments) {
    model::PaintLayer layer = layerFrom(session, arguments, "into");
    const QPointF at = arguments.point("at");
    raster::LayerRasterService::drawText(
        arguments.text("text"), layer, arguments.number("canvasWidth"),
        arguments.number("canvasHeight"), {at.x(), at.y()}, colorFrom(arguments, "color"),
        styleFrom(arguments), arguments.size("textBoxSize"));
    return pixelResult(session, arguments, layer);
}

/// The height of the text and the first and last caret of each line.
QJsonValue measureText(Session&, const Arguments& arguments) {
    const raster::TextLayout layout(arguments.text("text"), styleFrom(arguments),
                                    arguments.number("width"));
    QJsonArray lines;
    for (int line = 0; line < layout.lineCount(); ++line) {
        const raster::TextRange range = layout.lineRange(line);
        lines.append(QJsonArray{range.start, range.end});
    }
    return QJsonObject{{QStringLiteral("textHeight"), layout.textHeight()},
                       {QStringLiteral("lines"), lines}};
}

constexpr Verb verbs[] = {
    {"raster.drawText",
     "text into canvasWidth canvasHeight at color fontFamily isBold? isItalic? isUnderlined? "
     "isStruckThrough? alignment? textBoxSize fontSize to?",
     drawText},
    {"raster.measureText",
     "text width fontFamily isBold? isItalic? isUnderlined? isStruckThrough? alignment? fontSize",
     measureText},
};

} // namespace

VerbTable rasterTextVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
