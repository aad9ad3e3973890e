// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/OutlinedStyle.h"

#include "shell/looks/KeysInOrder.h"
#include "shell/looks/Style.h"

#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>
#include <QTextEdit>

#include <algorithm>

namespace quillabrae::shell {
namespace {

enum class Edge { field, box, disc };

void paintEdge(QPainter& painter, const QStyleOption& option, Edge edge) {
    // The base style marks what has the keyboard, in the accent.
    const bool isMarked = edge == Edge::field && option.state.testFlag(QStyle::State_HasFocus);
    if (isMarked || !option.state.testFlag(QStyle::State_Enabled)) return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Style::outline(option.palette));
    painter.setBrush(Qt::NoBrush);
    const QRectF face = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (edge == Edge::disc)
        painter.drawEllipse(face);
    else
        painter.drawRoundedRect(face, 2.0, 2.0);
    painter.restore();
}

bool isStark(const QStyleOption& option) {
    return Style::contrastOf(option.palette) == Contrast::high;
}

/// Whether the button's face is the accent.
bool hasPrimaryFace(const QStyleOption& option, const QWidget* widget) {
    return Style::isPrimary(widget) && option.state.testFlag(QStyle::State_Enabled);
}

/// The face of a button that is held down: further from its title than before.
QColor awayFrom(const QColor& ink, const QColor& face) {
    constexpr int percent = 115;
    return ink.lightness() < face.lightness() ? face.lighter(percent) : face.darker(percent);
}

/// Flat, since the base style's gradient is too light for the title on it.
void paintPrimary(QPainter& painter, const QStyleOption& option) {
    constexpr qreal ringInset = 2.5;
    const QColor face = Style::accent(option.palette);
    const QColor ink = option.palette.color(QPalette::HighlightedText);
    const bool isDown = option.state.testFlag(QStyle::State_Sunken);
    const QRectF rect = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown ? awayFrom(ink, face) : face);
    painter.drawRoundedRect(rect, 3.0, 3.0);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter.setPen(ink);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect.adjusted(ringInset, ringInset, -ringInset, -ringInset), 2.0,
                                2.0);
    }
    painter.restore();
}

/// The edge of a field of several lines, which the base style marks too faintly in both states.
void paintTextFrame(QPainter& painter, const QStyleOption& option) {
    if (!option.state.testFlag(QStyle::State_Enabled)) return;
    const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
    painter.save();
    painter.setPen(hasFocus ? Style::accent(option.palette) : Style::outline(option.palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

bool isTextField(const QWidget* widget) {
    return qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
           qobject_cast<const QTextEdit*>(widget) != nullptr;
}

/// A menu floats over whatever the window shows.
void paintMenuGround(QPainter& painter, const QStyleOption& option) {
    painter.fillRect(option.rect, Style::raised(option.palette));
}

void paintMenuEdge(QPainter& painter, const QStyleOption& option) {
    painter.save();
    painter.setPen(Style::outline(option.palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

/// The chosen tab is underlined, as those of projects are.
void paintTabMarks(QPainter& painter, const QStyleOption& option) {
    constexpr int thickness = 2;
    if (isStark(option)) paintEdge(painter, option, Edge::box);
    if (!option.state.testFlag(QStyle::State_Selected)) return;
    const QRect& tab = option.rect;
    painter.fillRect(tab.left() + 1, tab.bottom() + 1 - thickness, tab.width() - 2, thickness,
                     Style::accent(option.palette));
}

/// Of what is dragged, which the base style draws in shades of the window's colour.
void paintHandleEdge(QPainter& painter, const QStyleOption& option, const QRect& handle) {
    if (!handle.isValid() || !isStark(option)) return;
    QStyleOption part = option;
    part.rect = handle;
    paintEdge(painter, part, Edge::box);
}

constexpr int controlHeight = 28;

bool hasText(const QStyleOption* option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return button != nullptr && !button->text.isEmpty();
}

/// Buttons with a title, and fields but for the small ones that stand in rows of many.
bool hasControlHeight(QStyle::ContentsType type, const QStyleOption* option) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    const auto* spinBox = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
    switch (type) {
        case QStyle::CT_PushButton:
            return hasText(option);
        case QStyle::CT_LineEdit:
            // The one inside another field has no frame.
            return frame != nullptr && frame->lineWidth > 0;
        case QStyle::CT_SpinBox:
            return spinBox != nullptr && spinBox->buttonSymbols != QAbstractSpinBox::NoButtons;
        case QStyle::CT_ComboBox:
            return true;
        default:
            return false;
    }
}

} // namespace

OutlinedStyle::OutlinedStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    if (element == PE_PanelButtonCommand && hasPrimaryFace(*option, widget))
        return paintPrimary(*painter, *option);
    if (element == PE_PanelMenu) return paintMenuGround(*painter, *option);
    if (element == PE_FrameMenu) return paintMenuEdge(*painter, *option);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
        case PE_Frame:
            if (isTextField(widget) || isStark(*option)) paintTextFrame(*painter, *option);
            return;
        case PE_PanelButtonCommand:
            if (isStark(*option)) paintEdge(*painter, *option, Edge::box);
            return;
        case PE_FrameLineEdit:
            return paintEdge(*painter, *option, Edge::field);
        case PE_IndicatorCheckBox:
            return paintEdge(*painter, *option, Edge::box);
        case PE_IndicatorRadioButton:
            return paintEdge(*painter, *option, Edge::disc);
        default:
            return;
    }
}

void OutlinedStyle::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && item != nullptr &&
        item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty()) {
        const int middle = item->rect.center().y();
        painter->fillRect(item->rect.left() + Style::grid, middle,
                          item->rect.width() - 2 * Style::grid, 1, Style::line(item->palette));
        return;
    }
    if (element == CE_MenuItem && item != nullptr && item->direction == Qt::RightToLeft) {
        QStyleOptionMenuItem kept = *item;
        // The keys of a command follow its title.
        if (kept.text.contains(u'\t')) kept.text = keysInOrder(kept.text);
        return QProxyStyle::drawControl(element, &kept, painter, widget);
    }
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && button != nullptr && hasPrimaryFace(*option, widget)) {
        QStyleOptionButton onAccent = *button;
        onAccent.palette.setColor(QPalette::ButtonText,
                                  button->palette.color(QPalette::HighlightedText));
        return QProxyStyle::drawControl(element, &onAccent, painter, widget);
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_TabBarTabShape) paintTabMarks(*painter, *option);
}

int OutlinedStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const {
    if (metric == PM_MenuPanelWidth) return 1;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int OutlinedStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* returned) const {
    // Text of what is disabled is dim, not etched.
    if (hint == SH_EtchDisabledText) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    const auto* spinBox = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
    if (control == CC_SpinBox && spinBox != nullptr && spinBox->frame)
        paintEdge(*painter, *option, Edge::field);
    if (control == CC_Slider)
        paintHandleEdge(*painter, *option,
                        subControlRect(control, option, SC_SliderHandle, widget));
    if (control == CC_ScrollBar)
        paintHandleEdge(*painter, *option,
                        subControlRect(control, option, SC_ScrollBarSlider, widget));
    if (control == CC_ComboBox && isStark(*option)) paintEdge(*painter, *option, Edge::box);
}

QSize OutlinedStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                      const QSize& contents, const QWidget* widget) const {
    constexpr int air = 14;
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (hasControlHeight(type, option)) size.setHeight(std::max(size.height(), controlHeight));
    if (type == CT_PushButton && hasText(option))
        size.setWidth(std::max(size.width(), contents.width() + 2 * air));
    return size;
}

} // namespace quillabrae::shell
