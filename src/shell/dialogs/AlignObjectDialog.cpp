// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/AlignObjectDialog.h"

#include "shell/controls/IconButton.h"
#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <span>
#include <utility>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{390, 440};
constexpr int buttonsInRow = 3;
constexpr std::size_t gridActionCount = 9;

struct Section {
    const char* title;
    std::size_t first;
    std::size_t count;
};

constexpr std::array sections{
    Section{QT_TRANSLATE_NOOP("AlignObject", "Position"), 0, gridActionCount},
    Section{QT_TRANSLATE_NOOP("AlignObject", "Horizontal"), gridActionCount, buttonsInRow},
    Section{QT_TRANSLATE_NOOP("AlignObject", "Vertical"), gridActionCount + buttonsInRow,
            buttonsInRow}};

IconButton* makeButton(store::AlignObjectAction action, QWidget* parent) {
    // Three of them fill the dialog's width, so that each stands where it sends the object.
    constexpr QSize face{104, 40};
    auto* button = new IconButton(
        {.symbolName = store::symbolName(action), .title = title(action), .help = {}}, parent);
    button->setFixedSize(face);
    button->setCheckable(true);
    return button;
}

} // namespace

AlignObjectDialog::AlignObjectDialog(AlignObjectPreview preview, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Align Object"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, Style::grid);
    auto* group = new QButtonGroup(this);
    const auto actions = store::allAlignObjectActions();
    auto* places = new QWidget(this);
    // Left is left in every language.
    places->setLayoutDirection(Qt::LeftToRight);
    auto* rows = new QVBoxLayout(places);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(Style::grid);
    for (const Section& section : sections) {
        rows->addWidget(
            Labels::heading(QCoreApplication::translate("AlignObject", section.title), places));
        auto* grid = new QGridLayout;
        grid->setSpacing(Style::grid / 2);
        int place = 0;
        for (const auto action : std::span(actions).subspan(section.first, section.count)) {
            IconButton* button = makeButton(action, places);
            group->addButton(button, static_cast<int>(action));
            grid->addWidget(button, place / buttonsInRow, place % buttonsInRow);
            ++place;
        }
        rows->addLayout(grid);
    }
    column->addWidget(places);
    connect(group, &QButtonGroup::idClicked, this, [preview = std::move(preview)](int id) {
        preview(static_cast<store::AlignObjectAction>(id));
    });
    column->addStretch();
    DialogParts::addButtons(*this, tr("Apply"));
}

} // namespace quillabrae::shell
