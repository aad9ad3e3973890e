// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace quillabrae::services {

/// The host behind feedback and sign-in, as the build was configured with it.
class WebService {
public:
    /// `base` names the host, as in "https://example.org". Anything but HTTPS counts as none: what
    /// goes there is private.
    explicit WebService(QUrl base);

    bool isConfigured() const { return !m_base.isEmpty(); }
    /// The address of an absolute path; an empty one where there is no service.
    QUrl at(const QString& path) const;

private:
    QUrl m_base;
};

} // namespace quillabrae::services
