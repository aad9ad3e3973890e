// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/ReleaseVersion.h"

#include <QList>

#include <algorithm>

namespace quillabrae::services {
namespace {

constexpr qsizetype mostNumbers = 8;
constexpr qsizetype mostDigits = 9;

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

} // namespace

std::optional<ReleaseVersion> ReleaseVersion::from(QStringView text) {
    ReleaseVersion version;
    const QList<QStringView> parts = text.split(u'.');
    if (parts.size() > mostNumbers) return std::nullopt;
    for (const QStringView part : parts) {
        if (part.isEmpty() || part.size() > mostDigits || !std::ranges::all_of(part, isDigit))
            return std::nullopt;
        version.m_numbers.push_back(part.toUInt());
    }
    while (!version.m_numbers.empty() && version.m_numbers.back() == 0)
        version.m_numbers.pop_back();
    return version;
}

} // namespace quillabrae::services
