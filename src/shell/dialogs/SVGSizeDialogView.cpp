// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/SVGSizeDialogView.h"

#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/dialogs/HeldDialog.h"
#include "shell/looks/Style.h"

#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{420, 250};

/// As many decimals as there are, up to two.
QString pixelsText(double value) {
    QString text = QString::number(value, 'f', 2);
    while (text.endsWith(u'0')) text.chop(1);
    return text.endsWith(u'.') ? text.chopped(1) : text;
}

} // namespace

SVGSizeDialogView::SVGSizeDialogView(QSizeF naturalSize, QWidget* parent)
    : QDialog(parent), m_fields(naturalSize) {
    setWindowTitle(tr("Import SVG"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, Style::grid);
    QLabel* text =
        Labels::body(tr("Choose the raster size for this SVG. Aspect ratio is locked."), this);
    text->setWordWrap(true);
    column->addWidget(text);
    column->addWidget(
        Labels::muted(tr("Original: %1 × %2 pixels")
                          .arg(pixelsText(naturalSize.width()), pixelsText(naturalSize.height())),
                      this));

    QGridLayout* grid = DialogParts::addGrid(*column);
    grid->setContentsMargins(0, Style::grid, 0, 0);
    const auto pixels = tr("pixels");
    m_width = DialogParts::addNumber(*grid, tr("Width:"), pixels);
    m_height = DialogParts::addNumber(*grid, tr("Height:"), pixels);
    showFields(nullptr);
    connect(m_width, &NumberField::valueChanged, this, [this](double width) {
        m_fields.editWidth(width);
        showFields(m_width);
    });
    connect(m_height, &NumberField::valueChanged, this, [this](double height) {
        m_fields.editHeight(height);
        showFields(m_height);
    });
    column->addStretch();
    DialogParts::addButtons(*this, tr("Import"));
    m_width->setFocus();
    m_width->selectAll();
}

std::optional<persistence::SVGImportSizeResult> SVGSizeDialogView::ask(QSizeF naturalSize,
                                                                       QWidget* parent) {
    HeldDialog dialog(new SVGSizeDialogView(naturalSize, parent));
    if (!dialog.isAccepted()) return std::nullopt;
    return dialog->answer();
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
