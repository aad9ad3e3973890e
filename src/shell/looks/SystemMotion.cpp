// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/SystemMotion.h"

namespace quillabrae::shell {
namespace {

/// The service's values: 0 no preference, 1 less motion.
constexpr uint prefersLessMotion = 1;

} // namespace

SystemMotion::SystemMotion()
    : m_preference(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("reduced-motion")),
      m_animations(QStringLiteral("org.gnome.desktop.interface"),
                   QStringLiteral("enable-animations")) {
    connect(&m_preference, &DesktopSetting::told, this, [this](const QVariant& value) {
        set(m_prefersLess, value.toUInt() == prefersLessMotion);
    });
    connect(&m_animations, &DesktopSetting::told, this,
            [this](const QVariant& value) { set(m_animates, value.toBool()); });
}

void SystemMotion::followSystem() {
    m_preference.follow();
    m_animations.follow();
}

void SystemMotion::set(bool& part, bool value) {
    const bool before = isReduced();
    part = value;
    if (isReduced() != before) Q_EMIT changed(isReduced());
}

} // namespace quillabrae::shell
