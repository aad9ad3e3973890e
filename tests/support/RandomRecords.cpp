// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RandomRecords.h"

#include <array>
#include <bit>
#include <cmath>

namespace quillabrae::tests {

using namespace quillabrae::model;

int RandomRecords::below(int limit) {
    return static_cast<int>(m_engine() % static_cast<std::uint32_t>(limit));
}

double RandomRecords::number() {
    switch (below(4)) {
        case 0:
            return below(5000);
        case 1:
            return below(20000) / 16.0 - 500.0;
        case 2: {
            constexpr std::array<double, 8> odd{0.0,   -0.0,   5e-324, 1.7976931348623157e308,
                                                1e100, -1e-99, 0.1,    9007199254740993.0};
            return odd[static_cast<std::size_t>(below(8))];
        }
        default: {
            const auto bits = (static_cast<std::uint64_t>(m_engine()) << 32) | m_engine();
            const auto value = std::bit_cast<double>(bits);
            return std::isfinite(value) ? value : 0.5;
        }
    }
}

QString RandomRecords::text() {
    constexpr std::array<char32_t, 20> letters{
        U'a',      U'Z',      U' ',          U'"',          U'\\', U'/',      U'\0',
        U'\n',     U'\t',     U'\x1f',       U'\x7f',       U'é',  U'\u2028', U'中',
        U'\ufffd', U'\ufeff', U'\U0001f58c', U'\U0010ffff', U'<',  U'ß'};
    QString result;
    for (int i = below(12); i > 0; --i) {
        const char32_t letter = letters[static_cast<std::size_t>(below(20))];
        for (const char16_t unit : QChar::fromUcs4(letter)) result += QChar(unit);
    }
    return result;
}

QUuid RandomRecords::uuid() {
    std::array<quint32, 4> words{};
    for (quint32& word : words) word = static_cast<quint32>(m_engine());
    return QUuid::fromRfc4122(
        QByteArray(reinterpret_cast<const char*>(words.data()), sizeof(words)));
}

QUrl RandomRecords::url() {
    const std::array<QString, 5> names{QStringLiteral("/home/a/Bild.quillabrae"),
                                       QStringLiteral("/tmp/mit Leer%20?#;&.png"),
                                       QStringLiteral("/ä/中/🖌.quillabrae"),
                                       QStringLiteral("/"), QStringLiteral("/[x]{y}|^`")};
    return QUrl::fromLocalFile(names[static_cast<std::size_t>(below(5))]);
}

QDateTime RandomRecords::date() {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(m_engine()) - 1'000'000'000, Qt::UTC);
}

PngBytes RandomRecords::png(int maximumSize) {
    QByteArray bytes(below(maximumSize + 1), Qt::Uninitialized);
    for (char& byte : bytes) byte = static_cast<char>(below(256));
    return PngBytes(bytes);
}

ColorValue RandomRecords::color() {
    return {number(), number(), number(), number()};
}

PixelSelection RandomRecords::selection() {
    PixelSelection result{number(), number(), number(), number(), std::nullopt};
    if (coin()) result.maskPNGData = png();
    return result;
}

FloatingPixelSelection RandomRecords::floating() {
    return {png(), number(), number(), uuid()};
}

PaintLayer RandomRecords::layer() {
    PaintLayer result{uuid(), text(), coin(), coin(), number(), std::nullopt};
    if (below(4) > 0) result.bitmapPNGData = png();
    return result;
}

PaintProject RandomRecords::project() {
    PaintProject result;
    result.id = uuid();
    result.title = text();
    if (coin()) result.fileURL = url();
    result.canvasWidth = number();
    result.canvasHeight = number();
    result.resolutionDPI = number();
    result.isCanvasSelected = coin();
    if (coin()) result.pixelSelection = selection();
    if (coin()) result.floatingSelection = floating();
    for (int i = below(5); i >= 0; --i) result.layers.push_back(layer());
    result.selectedLayerID = result.layers.front().id;
    result.lastModified = date();
    return result;
}

PaintStroke RandomRecords::stroke() {
    PaintStroke result;
    result.id = uuid();
    result.tool =
        allPaintTools()[static_cast<std::size_t>(below(static_cast<int>(paintToolCount)))];
    result.color = color();
    if (coin()) result.secondaryColor = color();
    result.lineWidth = number();
    if (coin()) result.hardness = number();
    for (int i = below(6); i > 0; --i) result.points.push_back({number(), number()});
    if (coin()) result.shape = allCanvasShapes()[static_cast<std::size_t>(below(8))];
    if (coin())
        result.shapeDrawingMode = allShapeDrawingModes()[static_cast<std::size_t>(below(3))];
    return result;
}

PaintImage RandomRecords::image() {
    return {uuid(), png(), number(), number(), number(), number()};
}

RecentProject RandomRecords::recent() {
    return {text(), url(), date()};
}

PaintHistoryState RandomRecords::history(int maximumEntries) {
    PaintHistoryState result;
    for (int i = below(maximumEntries + 1); i > 0; --i)
        result.entries.push_back({uuid(), text(), text(), project()});
    const int count = static_cast<int>(result.entries.size());
    result.selectedIndex = count == 0 ? -1 : below(count);
    return result;
}

PaintAppSettings RandomRecords::settings() {
    PaintAppSettings result;
    result.selectedTool =
        allPaintTools()[static_cast<std::size_t>(below(static_cast<int>(paintToolCount)))];
    result.primaryColor = color();
    result.secondaryColor = color();
    result.brushSize = number();
    result.selectedShape = allCanvasShapes()[static_cast<std::size_t>(below(8))];
    result.shapeDrawingMode = allShapeDrawingModes()[static_cast<std::size_t>(below(3))];
    result.shapeOutlineWidth = number();
    result.pencilHardness = number();
    result.textFontFamily = text();
    result.textAlignment = allCanvasTextAlignments()[static_cast<std::size_t>(below(3))];
    result.textBold = coin();
    result.textItalic = coin();
    result.textUnderline = coin();
    result.textStrikethrough = coin();
    result.zoomScale = number();
    result.showsPixelGrid = coin();
    result.lastCanvasResizeAnchor = allCanvasAnchors()[static_cast<std::size_t>(below(9))];
    return result;
}

} // namespace quillabrae::tests
