// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QColor>

namespace quillabrae::shell {

/// A framed square of a colour, over a checker where the colour is not opaque. The frame of a
/// checked one has the accent.
class ColorSwatch final : public QAbstractButton {
    Q_OBJECT

public:
    ColorSwatch(const QString& title, const QString& help, QWidget* parent = nullptr);

    void setColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color;
};

} // namespace quillabrae::shell
