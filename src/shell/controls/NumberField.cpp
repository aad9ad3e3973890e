// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/NumberField.h"

namespace quillabrae::shell {
namespace {

constexpr int mostDecimals = 2;
constexpr double beyondAnyCanvas = 1e9;

} // namespace

NumberField::NumberField(QWidget* parent) : QDoubleSpinBox(parent) {
    setDecimals(mostDecimals);
    setRange(0.0, beyondAnyCanvas);
    setAlignment(Qt::AlignRight);
    setLocale(QLocale::c());
}

QString NumberField::textFromValue(double value) const {
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

} // namespace quillabrae::shell
