// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <optional>
#include <span>

namespace quillabrae::model {

/// The row of `value` in its vocabulary's table. Every case has one.
template <typename Row, typename Case>
const Row& vocabularyRow(std::span<const Row> table, Case value) {
    return *std::ranges::find(table, value, &Row::value);
}

/// The case whose stored form is `rawText`; nothing for text that is no case's.
template <typename Row>
auto caseFromRawText(std::span<const Row> table, QStringView rawText)
    -> std::optional<decltype(Row::value)> {
    const auto row = std::ranges::find_if(table, [&](const Row& candidate) {
        return rawText == QLatin1StringView(candidate.rawText);
    });
    if (row == table.end()) return std::nullopt;
    return row->value;
}

} // namespace quillabrae::model
