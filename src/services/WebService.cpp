// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/WebService.h"

#include <utility>

namespace quillabrae::services {

WebService::WebService(QUrl base) {
    if (base.isValid() && base.scheme() == QStringLiteral("https") && !base.host().isEmpty())
        m_base = std::move(base);
}

QUrl WebService::at(const QString& path) const {
    if (!isConfigured()) return {};
    QUrl address = m_base;
    address.setPath(path);
    address.setQuery(QString());
    address.setFragment(QString());
    return address;
}

} // namespace quillabrae::services
