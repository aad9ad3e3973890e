// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/SVGSizeDialogView.h"

#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/looks/Style.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{420, 250};
constexpr int fieldWidth = 132;

NumberField* addField(QGridLayout& grid, const QString& title) {
    QWidget* parent = grid.parentWidget();
    const int row = grid.rowCount();
    auto* field = new NumberField(parent);
    field->setFixedWidth(fieldWidth);
    field->setAccessibleName(title.chopped(1));
    QLabel* label = Labels::body(title, parent);
    label->setBuddy(field);
    grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(field, row, 1);
    grid.addWidget(Labels::muted(QStringLiteral("pixels"), parent), row, 2);
    return field;
}

QHBoxLayout* makeButtons(QDialog& dialog) {
    auto* import = new QPushButton(QStringLiteral("Import"), &dialog);
    import->setDefault(true);
    Style::markPrimary(*import);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), &dialog);
    QObject::connect(import, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->setSpacing(Style::grid);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(import);
    return row;
}

/// As many decimals as there are, up to two.
QString pixelsText(double value) {
    QString text = QString::number(value, 'f', 2);
    while (text.endsWith(u'0')) text.chop(1);
    return text.endsWith(u'.') ? text.chopped(1) : text;
}

} // namespace

SVGSizeDialogView::SVGSizeDialogView(QSizeF naturalSize, QWidget* parent)
    : QDialog(parent), m_fields(naturalSize) {
    setWindowTitle(QStringLiteral("Import SVG"));
    setFixedSize(dialogSize);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4 * Style::grid, 3 * Style::grid, 4 * Style::grid, 3 * Style::grid);
    layout->setSpacing(Style::grid);
    layout->addWidget(Labels::title(QStringLiteral("Import SVG"), 1.4, this));
    QLabel* text = Labels::body(
        QStringLiteral("Choose the raster size for this SVG. Aspect ratio is locked."), this);
    text->setWordWrap(true);
    layout->addWidget(text);
    layout->addWidget(
        Labels::muted(QStringLiteral("Original: %1 × %2 pixels")
                          .arg(pixelsText(naturalSize.width()), pixelsText(naturalSize.height())),
                      this));

    auto* fields = new QWidget(this);
    auto* grid = new QGridLayout(fields);
    grid->setContentsMargins(0, Style::grid, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(Style::grid);
    grid->setColumnStretch(2, 1);
    m_width = addField(*grid, QStringLiteral("Width:"));
    m_height = addField(*grid, QStringLiteral("Height:"));
    showFields(nullptr);
    connect(m_width, &NumberField::valueChanged, this, [this](double width) {
        m_fields.editWidth(width);
        showFields(m_width);
    });
    connect(m_height, &NumberField::valueChanged, this, [this](double height) {
        m_fields.editHeight(height);
        showFields(m_height);
    });
    layout->addWidget(fields);
    layout->addStretch();
    layout->addLayout(makeButtons(*this));
    m_width->setFocus();
    m_width->selectAll();
}

/// The field that is being typed into is left alone until it loses the focus.
void SVGSizeDialogView::showFields(const NumberField* edited) {
    const auto show = [&](NumberField* field, double value) {
        if (field == edited) return;
        const QSignalBlocker blocker(field);
        field->setValue(value);
    };
    show(m_width, m_fields.width());
    show(m_height, m_fields.height());
}

} // namespace quillabrae::shell
