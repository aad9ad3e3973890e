// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Pasteboard.h"

#include <utility>
#include <vector>

namespace quillabrae::platform {

/// A clipboard of this process alone.
class MemoryPasteboard final : public Pasteboard {
public:
    using Item = std::pair<QString, QByteArray>;

    int changeCount() const override { return m_changeCount; }
    QStringList types() const override {
        QStringList types;
        for (const auto& [type, bytes] : m_items) types.append(type);
        return types;
    }
    QByteArray data(const QString& type) const override {
        for (const auto& [offered, bytes] : m_items) {
            if (offered == type) return bytes;
        }
        return {};
    }

    /// Replaces the contents, as another program's copy does.
    void put(std::vector<Item> items) {
        m_items = std::move(items);
        ++m_changeCount;
    }

private:
    std::vector<Item> m_items;
    int m_changeCount = 0;
};

} // namespace quillabrae::platform
