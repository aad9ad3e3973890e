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
    QLocale language;
    language.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    setLocale(language);
}

QString NumberField::textFromValue(double value) const {
    return locale().toString(value, 'f', QLocale::FloatingPointShortest);
}

QValidator::State NumberField::validate(QString& text, int& position) const {
    for (const QChar separator : {QChar(u'.'), QChar(u',')})
        text.replace(separator, locale().decimalPoint());
    return QDoubleSpinBox::validate(text, position);
}

} // namespace quillabrae::shell
