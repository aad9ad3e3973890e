// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/ResizeDialog.h"

#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/AnchorPicker.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabBar>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{520, 710};

QString title(ResizeDialogMode mode) {
    return mode == ResizeDialogMode::image ? ResizeDialog::tr("Resize")
                                           : ResizeDialog::tr("Canvas Size");
}

/// "900 x 620 px, 96 pixels/inch".
QString sizeText(double width, double height, double resolutionDPI) {
    return ResizeDialog::tr("%1 x %2 px, %3 pixels/inch")
        .arg(qRound64(width))
        .arg(qRound64(height))
        .arg(QLocale().toString(resolutionDPI, 'g', 6));
}

QComboBox* makeChoice(const QString& title, const QStringList& choices, QWidget* parent) {
    auto* choice = new QComboBox(parent);
    choice->addItems(choices);
    choice->setAccessibleName(title);
    return choice;
}

QVBoxLayout* addSection(QVBoxLayout& column, const QString& title, QWidget* section) {
    auto* layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid);
    layout->addWidget(Labels::heading(title, section));
    column.addWidget(section);
    return layout;
}

} // namespace

ResizeDialog::ResizeDialog(const ResizeDialogRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request), m_fields(request) {
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeBody(*this, 3 * Style::grid);
    addModes(*column);
    addBasis(*column);
    addPixelSize(*column);
    addPrintSize(*column);
    addAnchor(*column);
    column->addStretch();
    DialogParts::addButtons(*this, tr("Apply"));
    refresh();
    m_percentage->setFocus();
    m_percentage->selectAll();
}

void ResizeDialog::addModes(QVBoxLayout& column) {
    auto* modes = new QTabBar(this);
    modes->setAccessibleName(tr("What is resized"));
    modes->setExpanding(true);
    for (const ResizeDialogMode mode : {ResizeDialogMode::image, ResizeDialogMode::canvas})
        modes->addTab(title(mode));
    modes->setCurrentIndex(static_cast<int>(m_fields.mode()));
    connect(modes, &QTabBar::currentChanged, this, [this](int mode) {
        m_fields.setMode(static_cast<ResizeDialogMode>(mode));
        refresh();
    });
    column.addWidget(modes);
    m_oldSize = Labels::muted({}, this);
    m_newSize = Labels::body({}, this);
    auto* sizes = new QVBoxLayout;
    sizes->setSpacing(Style::grid / 2);
    sizes->addWidget(m_oldSize);
    sizes->addWidget(m_newSize);
    column.addLayout(sizes);
}

void ResizeDialog::addBasis(QVBoxLayout& column) {
    auto* percentage = new QRadioButton(tr("By percentage"), this);
    auto* absolute = new QRadioButton(tr("By absolute size"), this);
    percentage->setChecked(true);
    m_percentage = new NumberField(this);
    m_percentage->setAccessibleName(tr("Percentage"));
    bind(m_percentage, &ResizeFields::percentage, &ResizeFields::editPercentage);
    auto* maintains = new QCheckBox(tr("Maintain aspect ratio"), this);
    maintains->setChecked(m_fields.maintainsAspectRatio());

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(Style::grid);
    grid->setColumnStretch(2, 1);
    grid->addWidget(percentage, 0, 0);
    grid->addWidget(m_percentage, 0, 1);
    grid->addWidget(Labels::muted(QStringLiteral("%"), this), 0, 2);
    grid->addWidget(absolute, 1, 0);
    grid->addWidget(maintains, 1, 1, 1, 2);
    column.addLayout(grid);

    connect(percentage, &QRadioButton::toggled, this, [this](bool isPercentage) {
        m_fields.setBasis(isPercentage ? ResizeBasis::percentage : ResizeBasis::absolute);
        refresh();
    });
    connect(maintains, &QCheckBox::toggled, this,
            [this](bool isOn) { m_fields.setMaintainsAspectRatio(isOn); });
}

void ResizeDialog::addPixelSize(QVBoxLayout& column) {
    QVBoxLayout* section = addSection(column, tr("Pixel size"), new QWidget(this));
    QGridLayout* grid = DialogParts::addGrid(*section);
    const auto pixels = tr("pixels");
    NumberField* width = DialogParts::addNumber(*grid, tr("Width:"), pixels);
    NumberField* height = DialogParts::addNumber(*grid, tr("Height:"), pixels);
    bind(width, &ResizeFields::width, &ResizeFields::editWidth);
    bind(height, &ResizeFields::height, &ResizeFields::editHeight);
    m_lengths.insert(m_lengths.end(), {width, height});
    QComboBox* unit = makeChoice(tr("Resolution unit"), {tr("pixels/inch"), tr("pixels/cm")}, this);
    bind(DialogParts::addNumber(*grid, tr("Resolution:"), unit), &ResizeFields::shownResolution,
         &ResizeFields::editShownResolution);
    connect(unit, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_fields.setResolutionUnit(static_cast<ResolutionUnit>(index));
        refresh();
    });
}

void ResizeDialog::addPrintSize(QVBoxLayout& column) {
    QVBoxLayout* section = addSection(column, tr("Print size"), new QWidget(this));
    QGridLayout* grid = DialogParts::addGrid(*section);
    const QStringList units{tr("inches"), tr("centimeters")};
    QComboBox* unit = makeChoice(tr("Print unit"), units, this);
    m_printUnit = Labels::muted(units.first(), this);
    NumberField* width = DialogParts::addNumber(*grid, tr("Width:"), unit);
    NumberField* height = DialogParts::addNumber(*grid, tr("Height:"), m_printUnit);
    width->setAccessibleName(tr("Print width"));
    height->setAccessibleName(tr("Print height"));
    bind(width, &ResizeFields::printWidth, &ResizeFields::editPrintWidth);
    bind(height, &ResizeFields::printHeight, &ResizeFields::editPrintHeight);
    m_lengths.insert(m_lengths.end(), {width, height});
    connect(unit, &QComboBox::currentIndexChanged, this, [this, units](int index) {
        m_fields.setPrintUnit(static_cast<PrintUnit>(index));
        m_printUnit->setText(units.at(index));
        refresh();
    });
}

void ResizeDialog::addAnchor(QVBoxLayout& column) {
    m_anchor = new QWidget(this);
    QVBoxLayout* section = addSection(column, tr("Anchor"), m_anchor);
    auto* picker = new AnchorPicker(m_fields.anchor(), m_anchor);
    section->addWidget(picker);
    connect(picker, &AnchorPicker::anchorChosen, this,
            [this](model::CanvasAnchor anchor) { m_fields.setAnchor(anchor); });
}

void ResizeDialog::bind(NumberField* field, double (ResizeFields::*value)() const,
                        void (ResizeFields::*edit)(double)) {
    m_bindings.push_back({field, value});
    connect(field, &NumberField::valueChanged, this, [this, field, edit](double entered) {
        (m_fields.*edit)(entered);
        refresh(field);
    });
}

void ResizeDialog::refresh(const NumberField* edited) {
    for (const auto& [field, value] : m_bindings) {
        if (field == edited) continue;
        const QSignalBlocker silence(field);
        field->setValue((m_fields.*value)());
    }
    const bool isPercentage = m_fields.basis() == ResizeBasis::percentage;
    m_percentage->setEnabled(isPercentage);
    for (NumberField* field : m_lengths) field->setEnabled(!isPercentage);
    m_anchor->setVisible(m_fields.mode() == ResizeDialogMode::canvas);
    setWindowTitle(title(m_fields.mode()));
    m_oldSize->setText(tr("Old size: %1")
                           .arg(sizeText(m_request.canvasSize.width(),
                                         m_request.canvasSize.height(), m_request.resolutionDPI)));
    m_newSize->setText(
        tr("New size: %1")
            .arg(sizeText(m_fields.width(), m_fields.height(), m_fields.resolutionDPI())));
}

} // namespace quillabrae::shell
