// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/ColorRemovalDialog.h"

#include "shell/controls/Labels.h"
#include "shell/controls/SliderRow.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/editor/ColorStack.h"
#include "shell/editor/ColorSwatch.h"
#include "shell/looks/Style.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>

#include <utility>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{520, 310};
constexpr SliderRow::Range tolerances{0.0, 20.0, 0.25};
constexpr SliderRow::Range alphas{0.0, 255.0, 1.0};

} // namespace

ColorRemovalDialog::ColorRemovalDialog(const model::PaintAppSettings& settings,
                                       ColorRemovalPreview preview, QWidget* parent)
    : QDialog(parent), m_swatches(new QButtonGroup(this)) {
    setWindowTitle(tr("Color Removal"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, 12);
    m_tolerance = new SliderRow(tr("Color tolerance"), {}, tolerances, this);
    m_alphaThreshold =
        new SliderRow(tr("Consider transparent any alpha smaller than"), {}, alphas, this);
    const store::ColorRemovalSettings start;
    m_tolerance->showValue(start.tolerancePercentage);
    m_alphaThreshold->showValue(start.transparentAlphaThresholdPercentage);
    column->addWidget(m_tolerance);
    column->addWidget(m_alphaThreshold);
    column->addWidget(Labels::body(tr("What color?"), this));
    column->addWidget(makeSwatches(settings));
    m_swatches->button(static_cast<int>(start.preset))->setChecked(true);
    column->addStretch();
    DialogParts::addButtons(*this, tr("Apply"));

    const auto tell = [this, preview = std::move(preview)] { preview(answer()); };
    connect(m_tolerance, &SliderRow::valueSettled, this, tell);
    connect(m_alphaThreshold, &SliderRow::valueSettled, this, tell);
    connect(m_swatches, &QButtonGroup::idClicked, this, tell);
}

QWidget* ColorRemovalDialog::makeSwatches(const model::PaintAppSettings& settings) {
    constexpr int extent = 30;
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid);
    for (const store::ColorRemovalPreset preset : store::allColorRemovalPresets()) {
        auto* swatch = new ColorButton(toQColor(colorOf(preset, settings)), title(preset), row);
        swatch->setFixedSize(extent, extent);
        swatch->setCheckable(true);
        m_swatches->addButton(swatch, static_cast<int>(preset));
        layout->addWidget(swatch);
    }
    layout->addStretch();
    return row;
}

store::ColorRemovalSettings ColorRemovalDialog::answer() const {
    return {m_tolerance->value(), m_alphaThreshold->value(),
            static_cast<store::ColorRemovalPreset>(m_swatches->checkedId())};
}

} // namespace quillabrae::shell
