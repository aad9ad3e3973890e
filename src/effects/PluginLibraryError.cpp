// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginLibraryError.h"

#include <QCoreApplication>

namespace quillabrae::effects {
namespace {

/// The context of this file's texts, for translators.
struct PluginLibraryErrorTexts {
    Q_DECLARE_TR_FUNCTIONS(PluginLibraryErrorTexts)
};

QString descriptionOf(PluginLibraryError::Reason reason, const QString& detail) {
    switch (reason) {
        case PluginLibraryError::Reason::installFailed:
            return PluginLibraryErrorTexts::tr("The plugin could not be installed: %1").arg(detail);
        case PluginLibraryError::Reason::uninstallFailed:
            return PluginLibraryErrorTexts::tr("The plugin could not be removed: %1").arg(detail);
        case PluginLibraryError::Reason::pluginNotInCatalog:
            return PluginLibraryErrorTexts::tr(
                "This plugin is not available in the Quillabrae library.");
    }
    return {};
}

} // namespace

PluginLibraryError::PluginLibraryError(Reason reason, const QString& detail)
    : std::runtime_error(descriptionOf(reason, detail).toStdString()),
      m_reason(reason),
      m_description(descriptionOf(reason, detail)) {}

} // namespace quillabrae::effects
