// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"

#include <QAccessibleWidget>
#include <QPixmap>
#include <QWidget>

namespace quillabrae::shell {

struct ColorWheel;

/// A disc of hues with a marker on the colour. The pointer picks, the arrow keys turn the hue and
/// change the saturation.
class HueWheel final : public QWidget {
    Q_OBJECT

public:
    static constexpr int extent = 104;

    explicit HueWheel(QWidget* parent = nullptr);

    void showColor(const model::ColorValue& color);
    /// The hue and saturation in words.
    QString valueText() const;

Q_SIGNALS:
    void colorPicked(const model::ColorValue& color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    ColorWheel wheel() const;
    void pick(QPointF at);
    void turn(double hue, double saturation);

    model::ColorValue m_color;
    QPixmap m_disc;
};

/// The wheel as a screen reader meets it.
class HueWheelAccessible final : public QAccessibleWidget {
public:
    explicit HueWheelAccessible(HueWheel* wheel);

    QString text(QAccessible::Text kind) const override;
    /// Makes wheels known by this class from now on.
    static void install();
};

} // namespace quillabrae::shell
