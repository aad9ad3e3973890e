// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"
#include "store/ProjectStore.h"

#include <QFontDatabase>

namespace quillabrae::store {

void ProjectStore::editSettings(const std::function<void(model::PaintAppSettings&)>& edit) {
    const model::PaintAppSettings before = m_settings;
    edit(m_settings);
    if (m_settings == before) return;
    persistSettings();
    Q_EMIT settingsChanged();
}

void ProjectStore::selectTool(model::PaintTool tool) {
    editSettings([tool](model::PaintAppSettings& settings) { settings.selectedTool = tool; });
}

void ProjectStore::persistSettings() {
    if (!isPersistent()) return;
    persistence::AppPersistenceService::saveSettings(m_environment.preferences, m_settings);
}

void ProjectStore::restoreSettings() {
    const model::PaintAppSettings stored =
        persistence::AppPersistenceService::loadSettings(m_environment.preferences);
    m_settings = stored.clamped();
    if (m_settings != stored) persistSettings();
}

std::vector<double> ProjectStore::availableShapeOutlineWidths() {
    std::vector<double> widths;
    for (int width = 1; width <= 32; ++width) widths.push_back(width);
    return widths;
}

QStringList ProjectStore::availableTextFontFamilies() {
    QStringList families = QFontDatabase::families();
    families.sort();
    return families;
}

QString ProjectStore::defaultTextFontFamily() {
    const QString preferred = QStringLiteral("Helvetica Neue");
    const QStringList families = availableTextFontFamilies();
    if (families.contains(preferred)) return preferred;
    return families.isEmpty() ? QStringLiteral("Helvetica") : families.first();
}

} // namespace quillabrae::store
