// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/Symbols.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillabrae::shell::Symbols {
namespace {

using namespace std::string_view_literals;

/// A symbol and its drawing.
struct Row {
    std::string_view symbol;
    std::string_view drawing;
};

constexpr std::array rows{
    // Tools
    Row{"selection.pin.in.out"sv, "select-rectangle"sv},
    Row{"lasso"sv, "select-lasso"sv},
    Row{"circle.dashed"sv, "select-ellipse"sv},
    Row{"wand.and.stars"sv, "wand"sv},
    Row{"cursorarrow.motionlines"sv, "move-pixels"sv},
    Row{"cursorarrow"sv, "move-selection"sv},
    Row{"magnifyingglass"sv, "magnifier"sv},
    Row{"hand.draw"sv, "hand"sv},
    Row{"drop.fill"sv, "bucket"sv},
    Row{"square.fill.on.square.fill"sv, "gradient"sv},
    Row{"paintbrush"sv, "brush"sv},
    Row{"eraser"sv, "eraser"sv},
    Row{"pencil"sv, "pencil"sv},
    Row{"eyedropper"sv, "eyedropper"sv},
    Row{"rectangle.on.rectangle"sv, "stamp"sv},
    Row{"paintpalette"sv, "palette"sv},
    Row{"textformat"sv, "text"sv},
    Row{"line.diagonal"sv, "line"sv},
    Row{"square.on.circle"sv, "shapes"sv},
    // Commands
    Row{"doc.badge.plus"sv, "document-new"sv},
    Row{"folder.badge.plus"sv, "folder"sv},
    Row{"folder"sv, "folder"sv},
    Row{"square.and.arrow.down"sv, "save"sv},
    Row{"arrow.uturn.backward"sv, "undo"sv},
    Row{"arrow.uturn.forward"sv, "redo"sv},
    Row{"grid"sv, "grid"sv},
    Row{"grid.circle.fill"sv, "grid-on"sv},
    Row{"arrow.triangle.2.circlepath"sv, "swap"sv},
    Row{"arrow.down.circle.fill"sv, "arrow-down-circle"sv},
    Row{"plus"sv, "plus"sv},
    Row{"plus.square"sv, "plus-square"sv},
    Row{"minus.square"sv, "minus-square"sv},
    Row{"doc.on.doc"sv, "copy"sv},
    Row{"square.stack.3d.down.right"sv, "merge-down"sv},
    Row{"slider.horizontal.3"sv, "sliders"sv},
    Row{"lock.fill"sv, "lock"sv},
    Row{"eye"sv, "eye"sv},
    Row{"eye.slash"sv, "eye-slash"sv},
    Row{"chevron.down"sv, "chevron-down"sv},
    Row{"chevron.right"sv, "chevron-right"sv},
    Row{"xmark"sv, "close"sv},
    Row{"gearshape"sv, "gear"sv},
    // Sections of the settings and the library
    Row{"person.crop.circle"sv, "person"sv},
    Row{"macwindow"sv, "window"sv},
    Row{"hand.raised"sv, "shield"sv},
    Row{"square.grid.2x2"sv, "tiles"sv},
    Row{"checkmark.circle"sv, "check-ring"sv},
    // Options of tools
    Row{"rectangle"sv, "shape-rectangle"sv},
    Row{"capsule"sv, "shape-rounded"sv},
    Row{"circle"sv, "shape-ellipse"sv},
    Row{"diamond"sv, "shape-diamond"sv},
    Row{"square.on.square"sv, "shape-trapezoid"sv},
    Row{"skew"sv, "shape-parallelogram"sv},
    Row{"triangle"sv, "shape-triangle"sv},
    Row{"square"sv, "style-outline"sv},
    Row{"square.fill"sv, "style-fill"sv},
    Row{"square.fill.on.square"sv, "style-both"sv},
    Row{"bold"sv, "bold"sv},
    Row{"italic"sv, "italic"sv},
    Row{"underline"sv, "underline"sv},
    Row{"strikethrough"sv, "strikethrough"sv},
    Row{"text.alignleft"sv, "text-left"sv},
    Row{"text.aligncenter"sv, "text-center"sv},
    Row{"text.alignright"sv, "text-right"sv},
    // Steps of the history
    Row{"trash"sv, "trash"sv},
    Row{"arrow.up.arrow.down"sv, "up-down"sv},
    Row{"wand.and.sparkles"sv, "sliders"sv},
    Row{"doc.on.clipboard"sv, "clipboard"sv},
    Row{"arrow.up.left.and.arrow.down.right"sv, "resize"sv},
    Row{"arrow.up.and.down.and.arrow.left.and.right"sv, "move"sv},
    Row{"rectangle.expand.vertical"sv, "canvas-size"sv},
    Row{"xmark.square"sv, "deselect"sv},
    Row{"scissors"sv, "scissors"sv},
    Row{"circle.lefthalf.filled"sv, "invert"sv},
    Row{"arrow.left.and.right.righttriangle.left.righttriangle.right"sv, "flip-horizontal"sv},
    Row{"arrow.up.and.down.righttriangle.up.righttriangle.down"sv, "flip-vertical"sv},
    Row{"rotate.3d"sv, "rotate"sv},
    Row{"crop"sv, "trim"sv},
    Row{"square.grid.3x3"sv, "align"sv},
    Row{"eraser.line.dashed"sv, "color-removal"sv},
    Row{"sparkles"sv, "sparkles"sv},
    Row{"scribble.variable"sv, "scribble"sv},
    Row{"paintpalette.fill"sv, "palette"sv},
    Row{"square.grid.3x3.fill"sv, "mosaic"sv},
    Row{"viewfinder"sv, "viewfinder"sv},
    Row{"sun.max.fill"sv, "sun"sv},
    Row{"clock.arrow.circlepath"sv, "clock"sv},
    Row{"graduationcap"sv, "cap"sv},
    Row{"keyboard"sv, "keyboard"sv},
    Row{"clipboard"sv, "clipboard"sv},
    // Feedback
    Row{"bubble.left.and.bubble.right"sv, "bubbles"sv},
    Row{"photo"sv, "photo"sv},
    Row{"checkmark.circle.fill"sv, "check-circle"sv},
    // Places
    Row{"arrow.up"sv, "arrow-up"sv},
    Row{"arrow.up.right"sv, "arrow-up-right"sv},
    Row{"arrow.right"sv, "arrow-right"sv},
    Row{"arrow.down.right"sv, "arrow-down-right"sv},
    Row{"arrow.down"sv, "arrow-down"sv},
    Row{"arrow.down.left"sv, "arrow-down-left"sv},
    Row{"arrow.left"sv, "arrow-left"sv},
    Row{"arrow.up.left"sv, "arrow-up-left"sv},
    Row{"smallcircle.filled.circle"sv, "middle"sv},
    Row{"arrow.left.to.line"sv, "align-left"sv},
    Row{"arrow.left.and.right"sv, "align-center"sv},
    Row{"arrow.right.to.line"sv, "align-right"sv},
    Row{"arrow.up.to.line"sv, "align-top"sv},
    Row{"arrow.up.and.down"sv, "align-middle"sv},
    Row{"arrow.down.to.line"sv, "align-bottom"sv},
    Row{"quillabrae.project"sv, "com.orvik.Quillabrae"sv},
};

/// Drawings that point back or on, and what takes their place where text runs from right to left.
constexpr std::array mirrored{
    std::pair{"undo"sv, "redo"sv},
    std::pair{"redo"sv, "undo"sv},
    std::pair{"chevron-right"sv, "chevron-left"sv},
};

std::string_view drawingOf(const Row& row) {
    if (!QGuiApplication::isRightToLeft()) return row.drawing;
    const auto* const found =
        std::ranges::find(mirrored, row.drawing, [](const auto& each) { return each.first; });
    return found == mirrored.end() ? row.drawing : found->second;
}

/// For what Qt draws in its own dialogs.
constexpr auto lightTheme = "breeze";
constexpr auto darkTheme = "breeze-dark";

const Row* find(const QString& symbolName) {
    const QByteArray name = symbolName.toLatin1();
    const std::string_view sought(name.constData(), static_cast<std::size_t>(name.size()));
    const auto* const found = std::ranges::find(rows, sought, &Row::symbol);
    return found == rows.end() ? nullptr : found;
}

} // namespace

void useScheme(ColorScheme scheme) {
    QIcon::setThemeName(QLatin1StringView(scheme == ColorScheme::dark ? darkTheme : lightTheme));
    QIcon::setFallbackThemeName(QLatin1StringView(lightTheme));
}

QIcon icon(const QString& symbolName) {
    const Row* row = find(symbolName);
    if (row == nullptr) return {};
    const bool isDark = QIcon::themeName() == QLatin1StringView(darkTheme);
    const std::string_view drawing = drawingOf(*row);
    const auto name = QLatin1StringView(drawing.data(), qsizetype(drawing.size()));
    return QIcon(QStringLiteral(":/symbols/%1/%2.svg")
                     .arg(isDark ? QStringLiteral("dark") : QStringLiteral("light"), name));
}

bool isKnown(const QString& symbolName) {
    return find(symbolName) != nullptr;
}

QStringList names() {
    QStringList names;
    for (const Row& row : rows)
        names << QString::fromLatin1(row.symbol.data(), qsizetype(row.symbol.size()));
    return names;
}

} // namespace quillabrae::shell::Symbols
