// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/HoverTooltip.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QSlider;

namespace quillabrae::shell {

/// A title, a slider over whole numbers and the value as text.
class LabeledSlider final : public QWidget {
    Q_OBJECT

public:
    struct Range {
        int minimum = 0;
        int maximum = 100;
    };

    LabeledSlider(const HoverTooltipText& text, Range range, QWidget* parent = nullptr);

    /// Shows `value` rounded and inside the range, without a signal.
    void showValue(double value);
    /// The text before the track, where it is not the tooltip's title.
    void setLabel(const QString& label);
    /// Makes the track as wide as there is room.
    void stretchTrack();

Q_SIGNALS:
    /// The user has chosen another value.
    void valueChosen(int value);
    /// The user has let go of the slider, or has not changed the value for half a second.
    void valueSettled();

private:
    void setValueText(int value);

    QLabel* m_label;
    QSlider* m_slider;
    QLabel* m_valueText;
    QTimer m_quiet;
};

} // namespace quillabrae::shell
