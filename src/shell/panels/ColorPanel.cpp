// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/ColorPanel.h"

#include "shell/controls/GradientSlider.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/Labels.h"
#include "shell/controls/TextSize.h"
#include "shell/editor/ColorStack.h"
#include "shell/editor/ColorSwatch.h"
#include "shell/looks/Style.h"
#include "shell/panels/ColorComponents.h"
#include "shell/panels/HueWheel.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

#include <string_view>

namespace quillabrae::shell {
namespace {

constexpr int commonColumns = 9;
constexpr int commonGap = 2;
constexpr int labelWidth = 18;
constexpr int numberWidth = 44;
constexpr int sliderWidth = 104;
constexpr int hueStops = 6;

QWidget* column(QWidget* parent, QVBoxLayout*& layout) {
    auto* widget = new QWidget(parent);
    layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid / 2);
    return widget;
}

QString words(const char* text) {
    return QCoreApplication::translate("ColorComponent", text);
}

/// What the component's track shows: the colour with each of its values.
QGradientStops trackOf(const ColorComponent& component, const model::ColorValue& color) {
    using namespace std::string_view_literals;
    QGradientStops stops;
    if (component.title == "Hue"sv) {
        for (int stop = 0; stop <= hueStops; ++stop) {
            const double place = static_cast<double>(stop) / hueStops;
            stops.append({place, toQColor(toColorValue({place, 1.0, 1.0}, 1.0))});
        }
        return stops;
    }
    model::ColorValue opaque = color;
    opaque.alpha = 1.0;
    for (const double end : {0.0, 1.0}) stops.append({end, toQColor(component.write(opaque, end))});
    return stops;
}

} // namespace

ColorPanel::ColorPanel(store::ProjectStore& store, QWidget* parent)
    : FloatingPanel(tr("Colors"), parent), m_store(store) {
    HueWheelAccessible::install();
    auto* halves = new QHBoxLayout;
    halves->setSpacing(2 * Style::grid);
    halves->addWidget(makeBase(), 0, Qt::AlignTop);
    m_advanced = makeAdvanced();
    halves->addWidget(m_advanced, 0, Qt::AlignTop);
    content()->addLayout(halves);
    m_advanced->hide();
    connect(&m_store, &store::ProjectStore::settingsChanged, this, [this] {
        if (m_store.settings().primaryColor != m_shown) showColor();
    });
    showColor();
}

QWidget* ColorPanel::makeBase() {
    QVBoxLayout* layout = nullptr;
    QWidget* base = column(this, layout);
    auto* top = new QHBoxLayout;
    top->setSpacing(0);
    top->addWidget(new ColorStack(m_store, base), 0, Qt::AlignVCenter);
    top->addStretch();
    m_wheel = new HueWheel(base);
    connect(m_wheel, &HueWheel::colorPicked, this, &ColorPanel::setPrimary);
    top->addWidget(m_wheel);
    layout->addLayout(top);
    layout->addWidget(makeCommonColors());
    m_more = new QPushButton(base);
    m_more->setFocusPolicy(Qt::TabFocus);
    new HoverTooltip(m_more,
                     {tr("More"), tr("Shows the numbers of the primary color, or hides them.")},
                     HoverTooltipPlacement::above);
    m_more->setText(tr("More >>"));
    connect(m_more, &QAbstractButton::clicked, this, [this] { setExpanded(!isExpanded()); });
    layout->addWidget(m_more, 0, Qt::AlignRight);
    return base;
}

QWidget* ColorPanel::makeCommonColors() {
    auto* colors = new QWidget(this);
    auto* grid = new QGridLayout(colors);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(commonGap);
    int index = 0;
    for (const model::ColorValue& color : commonColors()) {
        auto* button = new ColorButton(toQColor(color), tr("Set primary color"), colors);
        connect(button, &QAbstractButton::clicked, this, [this, &color] { setPrimary(color); });
        grid->addWidget(button, index / commonColumns, index % commonColumns);
        ++index;
    }
    return colors;
}

QWidget* ColorPanel::makeAdvanced() {
    auto* advanced = new QWidget(this);
    auto* columns = new QHBoxLayout(advanced);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(2 * Style::grid);
    QVBoxLayout* left = nullptr;
    QVBoxLayout* right = nullptr;
    columns->addWidget(column(advanced, left), 0, Qt::AlignTop);
    columns->addWidget(column(advanced, right), 0, Qt::AlignTop);
    QString heading;
    QVBoxLayout* layout = left;
    for (const ColorComponent& component : colorComponents()) {
        const QString next = words(component.heading);
        if (next != heading) {
            if (!heading.isEmpty()) layout = right;
            layout->addWidget(Labels::heading(next, advanced));
            heading = next;
        }
        layout->addWidget(makeRow(component));
    }
    left->addWidget(Labels::heading(tr("Hex"), advanced));
    left->addWidget(makeHexRow());
    return advanced;
}

QWidget* ColorPanel::makeRow(const ColorComponent& component) {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid / 2);
    QLabel* label = Labels::body(words(component.label), row);
    TextSize::setFixedWidth(*label, labelWidth);
    auto* slider = new GradientSlider(row);
    slider->setFixedWidth(sliderWidth);
    slider->setRange(0, component.scale);
    slider->setAccessibleName(words(component.title));
    auto* number = new QSpinBox(row);
    number->setRange(0, component.scale);
    number->setButtonSymbols(QAbstractSpinBox::NoButtons);
    number->setAlignment(Qt::AlignRight);
    TextSize::setFixedWidth(*number, numberWidth);
    number->setKeyboardTracking(false);
    number->setAccessibleName(tr("%1 value").arg(words(component.title)));
    label->setBuddy(number);
    const auto write = [this, &component](int value) {
        setPrimary(component.withValue(m_store.settings().primaryColor, value));
    };
    connect(slider, &QSlider::valueChanged, this, write);
    connect(number, &QSpinBox::valueChanged, this, write);
    layout->addWidget(label);
    layout->addWidget(slider);
    layout->addWidget(number);
    m_rows.push_back({&component, slider, number});
    return row;
}

QWidget* ColorPanel::makeHexRow() {
    m_hex = new QLineEdit(this);
    m_hex->setAccessibleName(tr("Hex"));
    m_hex->setMaxLength(9);
    connect(m_hex, &QLineEdit::editingFinished, this, &ColorPanel::applyHex);
    return m_hex;
}

void ColorPanel::setExpanded(bool isExpanded) {
    m_advanced->setVisible(isExpanded);
    m_more->setText(isExpanded ? tr("Less <<") : tr("More >>"));
    fitContent();
}

void ColorPanel::setPrimary(const model::ColorValue& color) {
    m_store.editSettings([&](model::PaintAppSettings& settings) { settings.primaryColor = color; });
    showColor();
}

void ColorPanel::applyHex() {
    const model::ColorValue current = m_store.settings().primaryColor;
    const auto color = colorFromHex(m_hex->text(), current);
    // A text that was not changed must not round the colour.
    if (color && m_hex->text() != hexText(current)) return setPrimary(*color);
    m_hex->setText(hexText(current));
}

void ColorPanel::showColor() {
    m_shown = m_store.settings().primaryColor;
    m_wheel->showColor(m_shown);
    for (const Row& row : m_rows) showRow(row);
    m_hex->setText(hexText(m_shown));
}

void ColorPanel::showRow(const Row& row) const {
    const int value = row.component->value(m_shown);
    const QSignalBlocker silentSlider(row.slider);
    const QSignalBlocker silentNumber(row.number);
    row.slider->setValue(value);
    row.slider->setTrack(trackOf(*row.component, m_shown));
    row.number->setValue(value);
}

} // namespace quillabrae::shell
