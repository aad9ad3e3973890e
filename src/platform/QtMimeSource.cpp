// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtMimeSource.h"

#include <QMimeData>

namespace quillabrae::platform {

QStringList QtMimeSource::types() const {
    return m_contents.formats();
}

QByteArray QtMimeSource::data(const QString& type) const {
    return m_contents.data(type);
}

} // namespace quillabrae::platform
