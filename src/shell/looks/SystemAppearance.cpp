// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/SystemAppearance.h"

#include "platform/Preferences.h"
#include "shell/looks/OutlinedStyle.h"
#include "shell/looks/Symbols.h"

#include <QApplication>

namespace quillabrae::shell {
namespace {

/// The service's values: 0 no preference, 1 dark, 2 light.
constexpr uint prefersDark = 1;
/// The service's values: 0 no preference, 1 more contrast.
constexpr uint prefersContrast = 1;

const auto appearance = QStringLiteral("org.freedesktop.appearance");

} // namespace

SystemAppearance::SystemAppearance(platform::Preferences& preferences)
    : m_preferences(preferences),
      m_schemeSetting(appearance, QStringLiteral("color-scheme")),
      m_contrastSetting(appearance, QStringLiteral("contrast")),
      m_highContrastSetting(QStringLiteral("org.gnome.desktop.a11y.interface"),
                            QStringLiteral("high-contrast")),
      m_dark{QStringLiteral("Quillabrae.systemWasDark")},
      m_contrast{QStringLiteral("Quillabrae.systemPreferredContrast")},
      m_highContrast{QStringLiteral("Quillabrae.systemHadHighContrast")} {
    connect(&m_schemeSetting, &DesktopSetting::told, this,
            [this](const QVariant& value) { take(m_dark, value.toUInt() == prefersDark); });
    connect(&m_contrastSetting, &DesktopSetting::told, this,
            [this](const QVariant& value) { take(m_contrast, value.toUInt() == prefersContrast); });
    connect(&m_highContrastSetting, &DesktopSetting::told, this,
            [this](const QVariant& value) { take(m_highContrast, value.toBool()); });
    for (Switch* remembered : {&m_dark, &m_contrast, &m_highContrast})
        remembered->isOn = m_preferences.boolean(remembered->key, false);
    if (Style::schemeOf(QApplication::palette()) == ColorScheme::dark) m_dark.isOn = true;
    QApplication::setStyle(new OutlinedStyle);
    apply();
}

void SystemAppearance::followSystem() {
    for (DesktopSetting* setting : {&m_schemeSetting, &m_contrastSetting, &m_highContrastSetting})
        setting->follow();
}

void SystemAppearance::take(Switch& which, bool isOn) {
    m_preferences.setValue(which.key, isOn);
    if (isOn == which.isOn) return;
    which.isOn = isOn;
    apply();
}

void SystemAppearance::apply() const {
    const ColorScheme scheme = m_dark.isOn ? ColorScheme::dark : ColorScheme::light;
    const bool isHigh = m_contrast.isOn || m_highContrast.isOn;
    Symbols::useScheme(scheme);
    Style::apply(scheme, isHigh ? Contrast::high : Contrast::normal);
}

} // namespace quillabrae::shell
