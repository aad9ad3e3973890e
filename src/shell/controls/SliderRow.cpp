// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/SliderRow.h"

#include "shell/controls/Labels.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"

#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace quillabrae::shell {
namespace {

constexpr int fieldWidth = 84;
constexpr int unitWidth = 28;

} // namespace

SliderRow::SliderRow(const QString& title, const QString& unit, Range range, QWidget* parent)
    : QWidget(parent),
      m_range(range),
      m_slider(new QSlider(Qt::Horizontal, this)),
      m_field(new NumberField(this)),
      m_settled(range.minimum) {
    QLabel* label = Labels::body(title, this);
    label->setBuddy(m_slider);
    m_slider->setAccessibleName(title);
    m_slider->setRange(0, qRound((range.maximum - range.minimum) / range.step));
    m_slider->setPageStep(std::max(m_slider->maximum() / 10, 1));
    m_field->setAccessibleName(title);
    m_field->setRange(range.minimum, range.maximum);
    m_field->setSingleStep(range.step);
    TextSize::setFixedWidth(*m_field, fieldWidth);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(Style::grid);
    grid->setVerticalSpacing(Style::grid / 2);
    grid->addWidget(label, 0, 0, 1, unit.isEmpty() ? 2 : 3);
    grid->addWidget(m_slider, 1, 0);
    grid->addWidget(m_field, 1, 1);
    if (!unit.isEmpty()) {
        QLabel* unitLabel = Labels::muted(unit, this);
        unitLabel->setMinimumWidth(unitWidth);
        grid->addWidget(unitLabel, 1, 2);
    }

    connect(m_slider, &QSlider::valueChanged, this, &SliderRow::slide);
    connect(m_slider, &QSlider::sliderReleased, this, &SliderRow::settle);
    connect(m_field, &NumberField::valueChanged, this, [this](double value) {
        placeSlider(value);
        settle();
    });
}

double SliderRow::value() const {
    return m_field->value();
}

void SliderRow::showValue(double value) {
    const QSignalBlocker silence(this);
    m_field->setValue(value);
    m_settled = m_field->value();
    // The field may have had this value before the slider was ever placed.
    placeSlider(m_settled);
}

void SliderRow::placeSlider(double value) {
    const QSignalBlocker silence(m_slider);
    m_slider->setValue(qRound((value - m_range.minimum) / m_range.step));
}

void SliderRow::slide(int position) {
    const QSignalBlocker silence(m_field);
    m_field->setValue(m_range.minimum + position * m_range.step);
    if (!m_slider->isSliderDown()) settle();
}

void SliderRow::settle() {
    if (value() == m_settled) return;
    m_settled = value();
    Q_EMIT valueSettled(m_settled);
}

} // namespace quillabrae::shell
