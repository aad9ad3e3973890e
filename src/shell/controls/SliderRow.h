// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QSlider;

namespace quillabrae::shell {

class NumberField;

/// A title over a slider and a field for the same number, with its unit.
class SliderRow final : public QWidget {
    Q_OBJECT

public:
    struct Range {
        double minimum = 0.0;
        double maximum = 100.0;
        /// Of the slider and of the field's arrows; numbers between can be typed.
        double step = 1.0;
    };

    SliderRow(const QString& title, const QString& unit, Range range, QWidget* parent = nullptr);

    double value() const;
    /// Shows a value, limited to the range, without a signal.
    void showValue(double value);

Q_SIGNALS:
    /// The user has settled on another value: while the slider is dragged that is when it is let
    /// go.
    void valueSettled(double value);

private:
    void slide(int position);
    void placeSlider(double value);
    void settle();

    Range m_range;
    QSlider* m_slider;
    NumberField* m_field;
    double m_settled = 0.0;
};

} // namespace quillabrae::shell
