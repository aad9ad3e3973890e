// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/AlignObjectAction.h"

#include "model/Vocabulary.h"

#include <QCoreApplication>

namespace quillabrae::store {
namespace {

using Action = AlignObjectAction;
using Horizontal = AlignHorizontalTarget;
using Vertical = AlignVerticalTarget;

struct Row {
    Action value;
    const char* rawText;
    const char* title;
    const char* symbolName;
    Horizontal horizontal;
    Vertical vertical;
};

// clang-format off
constexpr std::array<Row, 15> table{{
    {Action::topLeft, "topLeft", QT_TRANSLATE_NOOP("AlignObjectAction", "Top Left"), "arrow.up.left", Horizontal::left, Vertical::top},
    {Action::topCenter, "topCenter", QT_TRANSLATE_NOOP("AlignObjectAction", "Top Center"), "arrow.up", Horizontal::center, Vertical::top},
    {Action::topRight, "topRight", QT_TRANSLATE_NOOP("AlignObjectAction", "Top Right"), "arrow.up.right", Horizontal::right, Vertical::top},
    {Action::middleLeft, "middleLeft", QT_TRANSLATE_NOOP("AlignObjectAction", "Middle Left"), "arrow.left", Horizontal::left, Vertical::middle},
    {Action::center, "center", QT_TRANSLATE_NOOP("AlignObjectAction", "Center"), "smallcircle.filled.circle", Horizontal::center, Vertical::middle},
    {Action::middleRight, "middleRight", QT_TRANSLATE_NOOP("AlignObjectAction", "Middle Right"), "arrow.right", Horizontal::right, Vertical::middle},
    {Action::bottomLeft, "bottomLeft", QT_TRANSLATE_NOOP("AlignObjectAction", "Bottom Left"), "arrow.down.left", Horizontal::left, Vertical::bottom},
    {Action::bottomCenter, "bottomCenter", QT_TRANSLATE_NOOP("AlignObjectAction", "Bottom Center"), "arrow.down", Horizontal::center, Vertical::bottom},
    {Action::bottomRight, "bottomRight", QT_TRANSLATE_NOOP("AlignObjectAction", "Bottom Right"), "arrow.down.right", Horizontal::right, Vertical::bottom},
    {Action::horizontalLeft, "horizontalLeft", QT_TRANSLATE_NOOP("AlignObjectAction", "Align Left"), "arrow.left.to.line", Horizontal::left, Vertical::keep},
    {Action::horizontalCenter, "horizontalCenter", QT_TRANSLATE_NOOP("AlignObjectAction", "Center Horizontally"), "arrow.left.and.right", Horizontal::center, Vertical::keep},
    {Action::horizontalRight, "horizontalRight", QT_TRANSLATE_NOOP("AlignObjectAction", "Align Right"), "arrow.right.to.line", Horizontal::right, Vertical::keep},
    {Action::verticalTop, "verticalTop", QT_TRANSLATE_NOOP("AlignObjectAction", "Align Top"), "arrow.up.to.line", Horizontal::keep, Vertical::top},
    {Action::verticalMiddle, "verticalMiddle", QT_TRANSLATE_NOOP("AlignObjectAction", "Center Vertically"), "arrow.up.and.down", Horizontal::keep, Vertical::middle},
    {Action::verticalBottom, "verticalBottom", QT_TRANSLATE_NOOP("AlignObjectAction", "Align Bottom"), "arrow.down.to.line", Horizontal::keep, Vertical::bottom},
}};
// clang-format on

const Row& row(AlignObjectAction action) {
    return model::vocabularyRow(std::span<const Row>(table), action);
}

} // namespace

std::array<AlignObjectAction, 15> allAlignObjectActions() {
    std::array<AlignObjectAction, 15> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(AlignObjectAction action) {
    return QString::fromLatin1(row(action).rawText);
}

std::optional<AlignObjectAction> alignObjectActionFromRawText(QStringView rawText) {
    return model::caseFromRawText(std::span<const Row>(table), rawText);
}

QString title(AlignObjectAction action) {
    return QCoreApplication::translate("AlignObjectAction", row(action).title);
}

QString symbolName(AlignObjectAction action) {
    return QString::fromLatin1(row(action).symbolName);
}

AlignHorizontalTarget horizontalTarget(AlignObjectAction action) {
    return row(action).horizontal;
}

AlignVerticalTarget verticalTarget(AlignObjectAction action) {
    return row(action).vertical;
}

} // namespace quillabrae::store
