// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPen>

class QPainter;
class QPalette;

namespace quillabrae::shell {

/// A framed square of a colour, over a checker where the colour is not opaque.
class ColorSwatch final : public QWidget {
    Q_OBJECT

public:
    ColorSwatch(const QString& title, const QString& help, QWidget* parent = nullptr);

    void setColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color;
};

/// A small square of a colour that can be pressed; the frame of a checked one has the accent.
class ColorButton final : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int extent = 18;

    ColorButton(const QColor& color, const QString& title, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QPen framePen() const;

    QColor m_color;
};

} // namespace quillabrae::shell
