// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/SystemFontSize.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr double least = 0.5;
constexpr double most = 3.0;

/// On X11 the desktop's settings daemon has the factor in the screen's resolution, by which Qt
/// draws everything larger, letters too.
bool isInScreen(double factor) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (QGuiApplication::platformName() != QLatin1StringView("xcb") || screen == nullptr)
        return false;
    constexpr double near = 0.01;
    const double times = screen->devicePixelRatio() / factor;
    return times > 1.0 - near && std::abs(times - std::round(times)) < near;
}

} // namespace

SystemFontSize::SystemFontSize()
    : m_setting(QStringLiteral("org.gnome.desktop.interface"),
                QStringLiteral("text-scaling-factor")),
      m_plain(QApplication::font()) {
    connect(&m_setting, &DesktopSetting::told, this, [this](const QVariant& value) {
        const double factor = value.toDouble();
        use(factor > 0.0 && !isInScreen(factor) ? factor : 1.0);
    });
}

void SystemFontSize::use(double factor) {
    factor = std::clamp(factor, least, most);
    if (factor == m_factor) return;
    m_factor = factor;
    QFont font = m_plain;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(m_plain.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(m_plain.pixelSize() * factor));
    QApplication::setFont(font);
}

} // namespace quillabrae::shell
