// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "NoPanels.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/MemoryPasteboard.h"
#include "platform/MemoryPreferences.h"
#include "store/ProjectStore.h"

#include <QTemporaryDir>

namespace quillabrae::bench {

/// A store with nothing in it, and the world that it needs.
struct EmptyStore {
    NoPanels noPanels;
    platform::MemoryPreferences preferences;
    platform::SystemClock clock;
    platform::NoFileIcons icons;
    platform::MemoryPasteboard pasteboard;
    QTemporaryDir folder;
    store::ProjectStore store{
        {noPanels, preferences, clock, icons, pasteboard, platform::AppPaths::under(folder.path())},
        store::Persistence::off};
};

} // namespace quillabrae::bench
