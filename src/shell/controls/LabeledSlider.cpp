// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/LabeledSlider.h"

#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

#include <chrono>

namespace quillabrae::shell {
namespace {

constexpr int trackWidth = 136;
constexpr int shortestTrack = 60;
constexpr std::chrono::milliseconds settlingTime{500};

} // namespace

LabeledSlider::LabeledSlider(const HoverTooltipText& text, Range range, QWidget* parent)
    : QWidget(parent),
      m_label(Labels::muted(text.title, this)),
      m_slider(new QSlider(Qt::Horizontal, this)),
      m_valueText(Labels::body({}, this)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid);
    m_label->setBuddy(m_slider);
    m_slider->setRange(range.minimum, range.maximum);
    m_slider->setSingleStep(1);
    // The canvas keeps the keyboard when the slider is dragged.
    m_slider->setFocusPolicy(Qt::TabFocus);
    m_slider->setFixedWidth(trackWidth);
    m_slider->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    TextSize::follow(*m_valueText, [this, widest = QString::number(range.maximum)] {
        m_valueText->setFixedWidth(m_valueText->fontMetrics().horizontalAdvance(widest) + 2);
    });
    m_valueText->setAlignment(Labels::trailing() | Qt::AlignVCenter);
    layout->addWidget(m_label);
    layout->addWidget(m_slider);
    layout->addWidget(m_valueText);
    new HoverTooltip(m_slider, text, HoverTooltipPlacement::below);
    connect(m_slider, &QSlider::valueChanged, this, [this](int value) {
        setValueText(value);
        Q_EMIT valueChosen(value);
        if (!m_slider->isSliderDown()) m_quiet.start();
    });
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(settlingTime);
    connect(&m_quiet, &QTimer::timeout, this, &LabeledSlider::valueSettled);
    connect(m_slider, &QSlider::sliderReleased, this, &LabeledSlider::valueSettled);
}

void LabeledSlider::setLabel(const QString& label) {
    m_label->setText(label);
}

void LabeledSlider::stretchTrack() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_slider->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_slider->setMinimumWidth(shortestTrack);
    m_slider->setMaximumWidth(QWIDGETSIZE_MAX);
}

void LabeledSlider::showValue(double value) {
    const QSignalBlocker silence(m_slider);
    m_slider->setValue(qRound(value));
    setValueText(m_slider->value());
}

void LabeledSlider::setValueText(int value) {
    m_valueText->setText(QString::number(value));
}

} // namespace quillabrae::shell
