// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace quillabrae::shell {

/// The base style with edges around fields, boxes and menus that show on light and on dark: its own
/// are shades of the window's colour, which a dark window swallows. The button of the likeliest
/// choice is flat, so that its title can be read on it. In high contrast every control has an edge.
class OutlinedStyle final : public QProxyStyle {
    Q_OBJECT

public:
    OutlinedStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    /// Menus have a rim, which their edge is drawn on.
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    /// Buttons have air at both sides of their title, and they and fields are of one height.
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
};

} // namespace quillabrae::shell
