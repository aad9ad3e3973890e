// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Browser.h"

#include <QUrlQuery>

#include <vector>

namespace quillabrae::services {

/// Notes the pages that it is to show.
class ScriptedBrowser final : public platform::Browser {
public:
    bool isThere = true;
    std::vector<QUrl> pages;

    bool open(const QUrl& page) override {
        if (isThere) pages.push_back(page);
        return isThere;
    }
    /// A value of the relative address that the last page goes on to.
    QString asked(const QString& name) const {
        if (pages.empty()) return {};
        const QUrl target(
            QUrlQuery(pages.back()).queryItemValue(QStringLiteral("next"), QUrl::FullyDecoded));
        return QUrlQuery(target).queryItemValue(name, QUrl::FullyDecoded);
    }
    QString state() const { return asked(QStringLiteral("state")); }
};

} // namespace quillabrae::services
