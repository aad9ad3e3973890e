// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DialogParts.h"

#include "shell/controls/BodyScroller.h"
#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"

#include <QCoreApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace quillabrae::shell::DialogParts {
namespace {

/// The context of this file's texts, for translators.
struct DialogPartsTexts {
    Q_DECLARE_TR_FUNCTIONS(DialogPartsTexts)
};

constexpr int sideMargin = 4 * Style::grid;
constexpr int endMargin = 3 * Style::grid;
constexpr int fieldWidth = 132;
/// Enough for the longest title, so that the grids of one dialog stand in line.
constexpr int titleWidth = 80;
constexpr qreal titleFactor = 1.4;

} // namespace

QVBoxLayout* makeBody(QWidget& dialog, int spacing) {
    auto* body = new ScrolledBody;
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(sideMargin, endMargin, sideMargin, spacing);
    column->setSpacing(spacing);
    auto* whole = new QVBoxLayout(&dialog);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);
    whole->addWidget(new BodyScroller(body, &dialog), 1);
    return column;
}

QVBoxLayout* makeColumn(QWidget& dialog, int spacing) {
    QVBoxLayout* column = makeBody(dialog, spacing);
    column->addWidget(Labels::title(dialog.windowTitle(), titleFactor, &dialog));
    return column;
}

QGridLayout* addGrid(QVBoxLayout& column) {
    auto* rows = new QWidget(column.parentWidget());
    auto* grid = new QGridLayout(rows);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(Style::grid);
    grid->setColumnMinimumWidth(0, titleWidth);
    grid->setColumnStretch(2, 1);
    column.addWidget(rows);
    return grid;
}

NumberField* addNumber(QGridLayout& grid, const QString& title, QWidget* unit) {
    QWidget* parent = grid.parentWidget();
    const int row = grid.rowCount();
    auto* field = new NumberField(parent);
    TextSize::setFixedWidth(*field, fieldWidth);
    field->setAccessibleName(title.chopped(1));
    QLabel* label = Labels::body(title, parent);
    label->setBuddy(field);
    grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(field, row, 1);
    if (unit != nullptr) grid.addWidget(unit, row, 2, Qt::AlignLeft | Qt::AlignVCenter);
    return field;
}

NumberField* addNumber(QGridLayout& grid, const QString& title, const QString& unit) {
    return addNumber(grid, title, Labels::muted(unit, grid.parentWidget()));
}

void addButtons(QWidget& dialog, QHBoxLayout* row) {
    row->setContentsMargins(sideMargin, 0, sideMargin, endMargin);
    row->setSpacing(Style::grid);
    qobject_cast<QVBoxLayout*>(dialog.layout())->addLayout(row);
}

void addButtons(QDialog& dialog, const QString& acceptTitle) {
    auto* accept = new QPushButton(acceptTitle, &dialog);
    accept->setObjectName(QStringLiteral("accept"));
    accept->setDefault(true);
    Style::markPrimary(*accept);
    auto* cancel = new QPushButton(DialogPartsTexts::tr("Cancel"), &dialog);
    QObject::connect(accept, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(accept);
    addButtons(dialog, row);
}

} // namespace quillabrae::shell::DialogParts
