// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <compare>
#include <optional>
#include <vector>

namespace quillabrae::services {

/// A version of the program: whole numbers between points, such as "1.10.2". They are compared
/// number by number, and a number that is not there counts as 0.
class ReleaseVersion {
public:
    /// Nothing for text that is anything else, or has more than 8 numbers or more than 9 digits in
    /// one of them.
    static std::optional<ReleaseVersion> from(QStringView text);

    friend std::strong_ordering operator<=>(const ReleaseVersion& a, const ReleaseVersion& b) {
        return a.m_numbers <=> b.m_numbers;
    }
    friend bool operator==(const ReleaseVersion& a, const ReleaseVersion& b) = default;

private:
    /// Without zeros at the end.
    std::vector<quint32> m_numbers;
};

} // namespace quillabrae::services
