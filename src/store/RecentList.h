// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/RecentProject.h"

#include <vector>

namespace quillabrae::store {

constexpr std::size_t maximumRecentCount = 8;

/// The preferences key of the list of recent projects.
QString recentsKey();

/// The list with tidy URLs and, of several entries for one path, the first. The file system is not
/// asked: some of the files may be on a network that is slow or gone.
std::vector<model::RecentProject> deduplicatedRecents(
    const std::vector<model::RecentProject>& recents);

} // namespace quillabrae::store
