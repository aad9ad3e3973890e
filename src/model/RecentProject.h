// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

namespace quillabrae::model {

/// One row of the list of recent projects; its identity is the path of `url`.
struct RecentProject {
    QString title;
    QUrl url;
    QDateTime openedAt;

    friend bool operator==(const RecentProject&, const RecentProject&) = default;
};

} // namespace quillabrae::model
