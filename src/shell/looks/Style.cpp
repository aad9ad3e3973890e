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

constexpr std::array disabledTones{
    Tone{QPalette::WindowText, 0xff9aa0a7, 0xff6d737b},
    Tone{QPalette::Text, 0xff9aa0a7, 0xff6d737b},
    Tone{QPalette::ButtonText, 0xff9aa0a7, 0xff6d737b},
    Tone{QPalette::Highlight, 0xffb9bfc6, 0xff4a4e55},
};

/// `alpha` of 255 of the text's colour: a neutral veil that works on light and dark alike.
QColor veil(const QPalette& palette, int alpha) {
    QColor color = palette.color(QPalette::WindowText);
    color.setAlpha(alpha);
    return color;
}

} // namespace

QPalette palette(ColorScheme scheme) {
    const auto pick = [scheme](const Tone& tone) {
        return QColor::fromRgba(scheme == ColorScheme::dark ? tone.dark : tone.light);
    };
    QPalette palette;
    for (const Tone& tone : tones) palette.setColor(tone.role, pick(tone));
    for (const Tone& tone : disabledTones) {
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

void apply(ColorScheme scheme) {
    QApplication::setPalette(palette(scheme));
}

void markPrimary(QPushButton& button) {
    QPalette own;
    const QColor face = accent(own);
    own.setColor(QPalette::Active, QPalette::Button, face);
    own.setColor(QPalette::Inactive, QPalette::Button, face);
    own.setColor(QPalette::Active, QPalette::ButtonText, own.color(QPalette::HighlightedText));
    own.setColor(QPalette::Inactive, QPalette::ButtonText, own.color(QPalette::HighlightedText));
    button.setPalette(own);
}

QColor line(const QPalette& palette) {
    return veil(palette, 36);
}
QColor outline(const QPalette& palette) {
    return veil(palette, schemeOf(palette) == ColorScheme::dark ? 132 : 148);
}
QColor mutedText(const QPalette& palette) {
    return veil(palette, 176);
}
QColor hover(const QPalette& palette) {
    return veil(palette, 20);
}
QColor pressed(const QPalette& palette) {
    return veil(palette, 40);
}

QColor failure(const QPalette& palette) {
    return schemeOf(palette) == ColorScheme::dark ? QColor(0xf2, 0x8b, 0x82)
                                                  : QColor(0xb3, 0x26, 0x1e);
}

QColor accent(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Highlight);
}

QColor accentWash(const QPalette& palette) {
    QColor wash = accent(palette);
    wash.setAlpha(schemeOf(palette) == ColorScheme::dark ? 64 : 46);
    return wash;
}

QColor raised(const QPalette& palette) {
    return schemeOf(palette) == ColorScheme::dark ? QColor(0x2d, 0x30, 0x35)
                                                  : QColor(0xfb, 0xfb, 0xfc);
}

} // namespace quillabrae::shell::Style
