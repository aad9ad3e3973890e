// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/RecentProject.h"

#include <vector>

namespace quillabrae::store {

constexpr std::size_t maximumRecentCount = 8;

/// The preferences key of the list of recent projects.
QString recentsKey();

/// The list with standardized URLs and, of several entries for one file, the first.
std::vector<model::RecentProject> deduplicatedRecents(
    const std::vector<model::RecentProject>& recents);

} // namespace quillabrae::store
