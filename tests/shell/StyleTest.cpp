// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/Style.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

/// The relative luminance of the web's accessibility guidelines.
double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

/// What a colour that is not opaque makes of the one under it.
QColor over(const QColor& top, const QColor& under) {
    const double alpha = top.alphaF();
    const auto mix = [alpha](double a, double b) { return a * alpha + b * (1.0 - alpha); };
    return QColor::fromRgbF(static_cast<float>(mix(top.redF(), under.redF())),
                            static_cast<float>(mix(top.greenF(), under.greenF())),
                            static_cast<float>(mix(top.blueF(), under.blueF())));
}

class StyleTest : public testing::TestWithParam<ColorScheme> {
protected:
    QColor color(QPalette::ColorRole role) const { return palette.color(role); }
    /// The surfaces that texts stand on.
    QList<QColor> surfaces() const {
        const QColor window = color(QPalette::Window);
        const QColor raised = Style::raised(palette);
        return {window,
                raised,
                color(QPalette::Base),
                color(QPalette::AlternateBase),
                color(QPalette::ToolTipBase),
                over(Style::accentWash(palette), window),
                over(Style::accentWash(palette), raised),
                over(Style::hover(palette), window),
                over(Style::hover(palette), raised)};
    }

    QPalette palette = Style::palette(GetParam());
};

constexpr double leastForText = 4.5;
constexpr double leastForMarks = 3.0;

TEST_P(StyleTest, HasTextsThatStandOutFromEverySurface) {
    for (const QColor& surface : surfaces()) {
        EXPECT_GE(contrast(color(QPalette::WindowText), surface), leastForText)
            << qPrintable(surface.name());
        EXPECT_GE(contrast(over(Style::mutedText(palette), surface), surface), leastForText)
            << qPrintable(surface.name());
    }
}

TEST_P(StyleTest, HasTextsThatStandOutFromTheirOwnSurface) {
    using enum QPalette::ColorRole;
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[]{
        {Text, Base},
        {PlaceholderText, Base},
        {PlaceholderText, Window},
        {ButtonText, Button},
        {ToolTipText, ToolTipBase},
        {HighlightedText, Highlight},
        {Link, Window},
        {Link, Base},
        {LinkVisited, Window},
    };
    for (const auto& [text, surface] : pairs)
        EXPECT_GE(contrast(color(text), color(surface)), leastForText) << text << " on " << surface;
}

TEST_P(StyleTest, HasAnAccentThatShowsOnEverySurface) {
    for (const QColor& surface : {color(QPalette::Window), Style::raised(palette)})
        EXPECT_GE(contrast(Style::accent(palette), surface), leastForMarks);
}

TEST_P(StyleTest, HasFieldsWhoseEdgesShow) {
    const QColor base = color(QPalette::Base);
    for (const QColor& surface : {color(QPalette::Window), Style::raised(palette)})
        EXPECT_GE(contrast(over(Style::outline(palette), base), surface), leastForMarks);
}

/// The row of pixels through the middle of a widget's face.
QList<QColor> middleRow(QWidget& widget) {
    const QImage picture = widget.grab().toImage();
    QList<QColor> row;
    for (int x = 0; x < picture.width(); ++x)
        row.append(picture.pixelColor(x, picture.height() / 2));
    return row;
}

TEST_P(StyleTest, PaintsTheEdgesOfFieldsAndBoxes) {
    const QPalette former = QApplication::palette();
    QApplication::setPalette(palette);
    QWidget window;
    QSpinBox number(&window);
    QLineEdit text(&window);
    QCheckBox box(&window);
    QRadioButton choice(&window);
    for (QWidget* field : std::initializer_list<QWidget*>{&number, &text, &box, &choice}) {
        field->resize(field->sizeHint());
        double best = 0.0;
        for (const QColor& pixel : middleRow(*field).first(4))
            best = std::max(best, contrast(pixel, color(QPalette::Window)));
        EXPECT_GE(best, leastForMarks) << field->metaObject()->className();
    }
    QApplication::setPalette(former);
}

TEST_P(StyleTest, PaintsButtonsThatTheirTitlesCanBeReadOn) {
    const QPalette former = QApplication::palette();
    QApplication::setPalette(palette);
    QWidget window;
    for (const bool isPrimary : {false, true}) {
        for (const bool isDown : {false, true}) {
            QPushButton button(QStringLiteral("Create"), &window);
            if (isPrimary) Style::markPrimary(button);
            button.setDown(isDown);
            button.resize(100, 36);
            const QImage picture = button.grab().toImage();
            const QColor title = button.palette().color(QPalette::ButtonText);
            // Along the left side of the face, where there is no letter.
            for (int y = 6; y < 30; ++y)
                EXPECT_GE(contrast(title, picture.pixelColor(8, y)), leastForText)
                    << isPrimary << isDown << ' ' << y;
        }
    }
    QApplication::setPalette(former);
}

INSTANTIATE_TEST_SUITE_P(BothSchemes, StyleTest,
                         testing::Values(ColorScheme::light, ColorScheme::dark));

} // namespace
} // namespace quillabrae::shell
