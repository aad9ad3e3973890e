// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/NewProjectDialog.h"

#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/looks/Style.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{420, 310};
constexpr double defaultResolution = 96.0;
constexpr int fieldWidth = 132;

NumberField* addField(QGridLayout& grid, const QString& title, double value,
                      const QString& suffix) {
    QWidget* parent = grid.parentWidget();
    const int row = grid.rowCount();
    auto* field = new NumberField(parent);
    field->setFixedWidth(fieldWidth);
    field->setValue(value);
    field->setAccessibleName(title.chopped(1));
    QLabel* label = Labels::body(title, parent);
    label->setBuddy(field);
    grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(field, row, 1);
    grid.addWidget(Labels::muted(suffix, parent), row, 2);
    return field;
}

QHBoxLayout* makeButtons(QDialog& dialog) {
    auto* create = new QPushButton(QStringLiteral("Create"), &dialog);
    create->setDefault(true);
    Style::markPrimary(*create);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), &dialog);
    QObject::connect(create, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->setSpacing(Style::grid);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(create);
    return row;
}

} // namespace

NewProjectDialog::NewProjectDialog(QSizeF size, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("New Project"));
    setFixedSize(dialogSize);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4 * Style::grid, 3 * Style::grid, 4 * Style::grid, 3 * Style::grid);
    layout->setSpacing(2 * Style::grid);
    layout->addWidget(Labels::title(QStringLiteral("New Project"), 1.4, this));
    layout->addWidget(Labels::heading(QStringLiteral("Canvas size"), this));

    auto* fields = new QWidget(this);
    auto* grid = new QGridLayout(fields);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(Style::grid);
    grid->setColumnStretch(2, 1);
    const auto pixels = QStringLiteral("pixels");
    m_width = addField(*grid, QStringLiteral("Width:"), size.width(), pixels);
    m_height = addField(*grid, QStringLiteral("Height:"), size.height(), pixels);
    m_resolution = addField(*grid, QStringLiteral("Resolution:"), defaultResolution,
                            QStringLiteral("pixels/inch"));
    layout->addWidget(fields);
    layout->addStretch();
    layout->addLayout(makeButtons(*this));
    m_width->setFocus();
    m_width->selectAll();
}

NewProjectDialogResult NewProjectDialog::answer() const {
    const auto whole = [](const NumberField* field) {
        return std::max(std::round(field->value()), 1.0);
    };
    return {whole(m_width), whole(m_height), whole(m_resolution)};
}

} // namespace quillabrae::shell
