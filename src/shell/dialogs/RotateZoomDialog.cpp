// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/RotateZoomDialog.h"

#include "shell/controls/SliderRow.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"

#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{420, 260};
constexpr SliderRow::Range angles{-180.0, 180.0, 1.0};
constexpr SliderRow::Range zooms{1.0, 400.0, 1.0};

} // namespace

RotateZoomDialog::RotateZoomDialog(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Rotate / Zoom"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, 2 * Style::grid);
    m_angle = new SliderRow(tr("Angle"), tr("deg"), angles, this);
    m_zoom = new SliderRow(tr("Zoom"), QStringLiteral("%"), zooms, this);
    const store::RotateZoomDialogResult start;
    m_angle->showValue(start.angleDegrees);
    m_zoom->showValue(start.zoomPercentage);
    column->addWidget(m_angle);
    column->addWidget(m_zoom);
    column->addStretch();
    DialogParts::addButtons(*this, tr("Apply"));
}

store::RotateZoomDialogResult RotateZoomDialog::answer() const {
    return {m_angle->value(), m_zoom->value()};
}

} // namespace quillabrae::shell
