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
        for (const PasteboardItem& item : m_items) types.append(item.type);
        return types;
    }
    QByteArray data(const QString& type) const override {
        for (const PasteboardItem& item : m_items) {
            if (item.type == type) return item.bytes();
        }
        return {};
    }
    bool write(std::vector<PasteboardItem> items) override {
        if (isReadOnly) return false;
        m_items = std::move(items);
        ++m_changeCount;
        return true;
    }

    /// Replaces the contents, as another program's copy does.
    void put(const std::vector<Item>& items) {
        m_items.clear();
        for (const auto& [type, bytes] : items)
            m_items.push_back({type, [bytes = bytes] { return bytes; }});
        ++m_changeCount;
    }

    /// Stands for a system that takes no copies.
    bool isReadOnly = false;

private:
    std::vector<PasteboardItem> m_items;
    int m_changeCount = 0;
};

} // namespace quillabrae::platform
