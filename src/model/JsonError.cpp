// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/JsonError.h"

namespace quillabrae::model {
namespace {

QString sentence(const QString& message, const QString& path) {
    return path.isEmpty() ? QStringLiteral("%1.").arg(message)
                          : QStringLiteral("%1 at %2.").arg(message, path);
}

} // namespace

JsonError::JsonError(const QString& message, const QString& path)
    : std::runtime_error(sentence(message, path).toStdString()), m_message(message), m_path(path) {}

QString JsonError::description() const {
    return sentence(m_message, m_path);
}

} // namespace quillabrae::model
