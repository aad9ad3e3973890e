// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/SystemColorScheme.h"

#include "platform/Preferences.h"
#include "shell/looks/OutlinedStyle.h"
#include "shell/looks/Symbols.h"

#include <QApplication>

namespace quillabrae::shell {
namespace {

const auto darkKey = QStringLiteral("Quillabrae.systemWasDark");

/// The service's values: 0 no preference, 1 dark, 2 light.
constexpr uint prefersDark = 1;

} // namespace

SystemColorScheme::SystemColorScheme(platform::Preferences& preferences)
    : m_preferences(preferences),
      m_setting(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")),
      m_scheme(Style::schemeOf(QApplication::palette())) {
    connect(&m_setting, &DesktopSetting::told, this, &SystemColorScheme::take);
    if (m_preferences.boolean(darkKey, false)) m_scheme = ColorScheme::dark;
    QApplication::setStyle(new OutlinedStyle);
    Symbols::useScheme(m_scheme);
    Style::apply(m_scheme);
}

void SystemColorScheme::take(const QVariant& value) {
    const bool isDark = value.toUInt() == prefersDark;
    m_preferences.setValue(darkKey, isDark);
    use(isDark ? ColorScheme::dark : ColorScheme::light);
}

void SystemColorScheme::use(ColorScheme scheme) {
    if (scheme == m_scheme) return;
    m_scheme = scheme;
    Symbols::useScheme(scheme);
    Style::apply(scheme);
}

} // namespace quillabrae::shell
