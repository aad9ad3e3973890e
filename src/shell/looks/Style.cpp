// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/Style.h"

#include <QApplication>
#include <QPushButton>

#include <array>

namespace quillabrae::shell::Style {
namespace {

struct Tone {
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array tones{
    Tone{QPalette::Window, 0xfff0f1f3, 0xff25272b},
    Tone{QPalette::WindowText, 0xff1d2126, 0xffe7e9ec},
    Tone{QPalette::Base, 0xffffffff, 0xff1b1d20},
    Tone{QPalette::AlternateBase, 0xfff6f7f8, 0xff212327},
    Tone{QPalette::Text, 0xff1d2126, 0xffe7e9ec},
    Tone{QPalette::PlaceholderText, 0xff666d76, 0xff8a9099},
    Tone{QPalette::Button, 0xfffafbfc, 0xff33363b},
    Tone{QPalette::ButtonText, 0xff1d2126, 0xffe7e9ec},
    Tone{QPalette::BrightText, 0xffffffff, 0xffffffff},
    Tone{QPalette::ToolTipBase, 0xffffffff, 0xff33363b},
    Tone{QPalette::ToolTipText, 0xff1d2126, 0xffe7e9ec},
    Tone{QPalette::Light, 0xffffffff, 0xff43474d},
    Tone{QPalette::Midlight, 0xffe4e6e9, 0xff3a3d43},
    Tone{QPalette::Mid, 0xffc9cdd2, 0xff17191b},
    Tone{QPalette::Dark, 0xffaeb4bb, 0xff131517},
    Tone{QPalette::Shadow, 0xff6c737b, 0xff000000},
    Tone{QPalette::Highlight, 0xff1f7487, 0xff3899af},
    Tone{QPalette::HighlightedText, 0xffffffff, 0xff0e1518},
    Tone{QPalette::Link, 0xff1b6a7c, 0xff6cc4d8},
    Tone{QPalette::LinkVisited, 0xff6a55b8, 0xffa898ea},
};

constexpr auto primaryProperty = "isPrimary";

/// The grounds are purely white and black here and nowhere else, which is what tells high contrast.
constexpr std::array starkTones{
    Tone{QPalette::Window, 0xffffffff, 0xff000000},
    Tone{QPalette::WindowText, 0xff000000, 0xffffffff},
    Tone{QPalette::Base, 0xffffffff, 0xff000000},
    Tone{QPalette::AlternateBase, 0xfff2f2f2, 0xff141414},
    Tone{QPalette::Text, 0xff000000, 0xffffffff},
    Tone{QPalette::PlaceholderText, 0xff404040, 0xffc4c4c4},
    Tone{QPalette::Button, 0xffffffff, 0xff1a1a1a},
    Tone{QPalette::ButtonText, 0xff000000, 0xffffffff},
    Tone{QPalette::BrightText, 0xffffffff, 0xffffffff},
    Tone{QPalette::ToolTipBase, 0xffffffff, 0xff000000},
    Tone{QPalette::ToolTipText, 0xff000000, 0xffffffff},
    Tone{QPalette::Light, 0xffffffff, 0xff5a5a5a},
    Tone{QPalette::Midlight, 0xffe0e0e0, 0xff3a3a3a},
    Tone{QPalette::Mid, 0xff8a8a8a, 0xff1a1a1a},
    Tone{QPalette::Dark, 0xff5a5a5a, 0xff101010},
    Tone{QPalette::Shadow, 0xff000000, 0xff000000},
    Tone{QPalette::Highlight, 0xff00485a, 0xff5fd7ef},
    Tone{QPalette::HighlightedText, 0xffffffff, 0xff000000},
    Tone{QPalette::Link, 0xff00485a, 0xff7fe0f5},
    Tone{QPalette::LinkVisited, 0xff4a2a8c, 0xffc9b8ff},
};

constexpr std::array disabledTones{
    Tone{QPalette::WindowText, 0xff9aa0a7, 0xff6d737b},
    Tone{QPalette::Text, 0xff9aa0a7, 0xff6d737b},
    Tone{QPalette::ButtonText, 0xff9aa0a7, 0xff6d737b},
    Tone{QPalette::Highlight, 0xffb9bfc6, 0xff4a4e55},
};

constexpr std::array starkDisabledTones{
    Tone{QPalette::WindowText, 0xff6e6e6e, 0xff9a9a9a},
    Tone{QPalette::Text, 0xff6e6e6e, 0xff9a9a9a},
    Tone{QPalette::ButtonText, 0xff6e6e6e, 0xff9a9a9a},
    Tone{QPalette::Highlight, 0xff6e6e6e, 0xff6e6e6e},
};

bool isStark(const QPalette& palette) {
    return contrastOf(palette) == Contrast::high;
}

bool isDark(const QPalette& palette) {
    return schemeOf(palette) == ColorScheme::dark;
}

/// `alpha` of 255 of the text's colour: a neutral veil that works on light and dark alike.
QColor veil(const QPalette& palette, int alpha) {
    QColor color = palette.color(QPalette::WindowText);
    color.setAlpha(alpha);
    return color;
}

} // namespace

QPalette palette(ColorScheme scheme, Contrast contrast) {
    const bool isHigh = contrast == Contrast::high;
    const auto pick = [scheme](const Tone& tone) {
        return QColor::fromRgba(scheme == ColorScheme::dark ? tone.dark : tone.light);
    };
    QPalette palette;
    for (const Tone& tone : isHigh ? starkTones : tones) palette.setColor(tone.role, pick(tone));
    for (const Tone& tone : isHigh ? starkDisabledTones : disabledTones) {
        palette.setColor(QPalette::Disabled, tone.role, pick(tone));
    }
    return palette;
}

ColorScheme schemeOf(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() <
                   palette.color(QPalette::WindowText).lightness()
               ? ColorScheme::dark
               : ColorScheme::light;
}

Contrast contrastOf(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Active, QPalette::Window);
    return ground == QColor(Qt::white) || ground == QColor(Qt::black) ? Contrast::high
                                                                      : Contrast::normal;
}

void apply(ColorScheme scheme, Contrast contrast) {
    QApplication::setPalette(palette(scheme, contrast));
}

void markPrimary(QPushButton& button) {
    button.setProperty(primaryProperty, true);
}

bool isPrimary(const QWidget* widget) {
    return widget != nullptr && widget->property(primaryProperty).toBool();
}

QColor line(const QPalette& palette) {
    return veil(palette, isStark(palette) ? 180 : 36);
}
QColor outline(const QPalette& palette) {
    if (isStark(palette)) return veil(palette, 200);
    return veil(palette, isDark(palette) ? 142 : 148);
}
QColor mutedText(const QPalette& palette) {
    return veil(palette, isStark(palette) ? 216 : 176);
}
QColor hover(const QPalette& palette) {
    return veil(palette, isStark(palette) ? 36 : 20);
}
QColor pressed(const QPalette& palette) {
    return veil(palette, isStark(palette) ? 64 : 40);
}

QColor failure(const QPalette& palette) {
    if (isStark(palette)) return QColor::fromRgb(isDark(palette) ? 0xffb4ab : 0x8c0009);
    return QColor::fromRgb(isDark(palette) ? 0xf28b82 : 0xb3261e);
}

QColor accent(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Highlight);
}

QColor accentWash(const QPalette& palette) {
    QColor wash = accent(palette);
    wash.setAlpha(isDark(palette) ? 64 : 46);
    return wash;
}

QColor raised(const QPalette& palette) {
    if (isStark(palette)) return palette.color(QPalette::Active, QPalette::Window);
    return QColor::fromRgb(isDark(palette) ? 0x2d3035 : 0xfbfbfc);
}

QColor paper(const QPalette& palette) {
    return isDark(palette) ? QColor::fromRgb(0x7a7f86)
                           : palette.color(QPalette::Active, QPalette::Base);
}

} // namespace quillabrae::shell::Style
