// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/NewProjectDialog.h"

#include "raster/PngCodec.h"
#include "raster/SurfaceSize.h"
#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{420, 310};
constexpr double defaultResolution = 96.0;
constexpr qint64 bytesPerPixel = 4;

} // namespace

CanvasNeed CanvasNeed::of(double width, double height) {
    const QLocale locale;
    if (const auto size = raster::surfaceSize(width, height)) {
        const qint64 bytes = bytesPerPixel * size->width() * size->height();
        return {NewProjectDialog::tr("Each layer takes %1 of memory.")
                    .arg(locale.formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat)),
                true};
    }
    if (std::max(width, height) > raster::maximumImageSide)
        return {NewProjectDialog::tr("Too large: a side can have %Ln pixels at most.", nullptr,
                                     raster::maximumImageSide),
                false};
    return {NewProjectDialog::tr("Too large: a picture can have %Ln million pixels at most.",
                                 nullptr, static_cast<int>(raster::maximumImagePixels / 1'000'000)),
            false};
}

NewProjectDialog::NewProjectDialog(QSizeF size, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("New Project"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, 2 * Style::grid);
    column->addWidget(Labels::heading(tr("Canvas size"), this));
    QGridLayout* grid = DialogParts::addGrid(*column);
    const auto addField = [grid](const QString& title, double value, const QString& unit) {
        NumberField* field = DialogParts::addNumber(*grid, title, unit);
        field->setValue(value);
        return field;
    };
    const auto pixels = tr("pixels");
    m_width = addField(tr("Width:"), size.width(), pixels);
    m_height = addField(tr("Height:"), size.height(), pixels);
    m_resolution = addField(tr("Resolution:"), defaultResolution, tr("pixels/inch"));
    m_need = Labels::muted({}, this);
    m_need->setObjectName(QStringLiteral("canvasNeed"));
    column->addWidget(m_need);
    column->addStretch();
    DialogParts::addButtons(*this, tr("Create"));
    m_create = findChild<QPushButton*>(QStringLiteral("accept"));
    for (const NumberField* field : {m_width, m_height})
        connect(field, &NumberField::valueChanged, this, &NewProjectDialog::showNeed);
    showNeed();
    m_width->setFocus();
    m_width->selectAll();
}

void NewProjectDialog::showNeed() {
    const CanvasNeed need = CanvasNeed::of(m_width->value(), m_height->value());
    m_need->setText(need.text);
    m_create->setEnabled(need.isPossible);
}

NewProjectDialogResult NewProjectDialog::answer() const {
    const auto whole = [](const NumberField* field) {
        return std::max(std::round(field->value()), 1.0);
    };
    return {whole(m_width), whole(m_height), whole(m_resolution)};
}

} // namespace quillabrae::shell
