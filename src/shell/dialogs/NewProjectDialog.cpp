// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/NewProjectDialog.h"

#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{420, 310};
constexpr double defaultResolution = 96.0;

} // namespace

NewProjectDialog::NewProjectDialog(QSizeF size, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("New Project"));
    setFixedSize(dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, 2 * Style::grid);
    column->addWidget(Labels::heading(QStringLiteral("Canvas size"), this));
    QGridLayout* grid = DialogParts::addGrid(*column);
    const auto addField = [grid](const QString& title, double value, const QString& unit) {
        NumberField* field = DialogParts::addNumber(*grid, title, unit);
        field->setValue(value);
        return field;
    };
    const auto pixels = QStringLiteral("pixels");
    m_width = addField(QStringLiteral("Width:"), size.width(), pixels);
    m_height = addField(QStringLiteral("Height:"), size.height(), pixels);
    m_resolution =
        addField(QStringLiteral("Resolution:"), defaultResolution, QStringLiteral("pixels/inch"));
    column->addStretch();
    column->addLayout(DialogParts::makeButtons(*this, QStringLiteral("Create")));
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
