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

/// The world that a store needs.
struct EmptyWorld {
    NoPanels noPanels;
    platform::MemoryPreferences preferences;
    platform::SystemClock clock;
    platform::NoFileIcons icons;
    platform::MemoryPasteboard pasteboard;
    QTemporaryDir folder;

    store::StoreEnvironment environment(
        const platform::LatestWorkFactory& makeLatestWork = platform::makeDirectLatestWork) {
        return {.panels = noPanels,
                .preferences = preferences,
                .clock = clock,
                .fileIcons = icons,
                .pasteboard = pasteboard,
                .paths = platform::AppPaths::under(folder.path()),
                .makeLatestWork = makeLatestWork};
    }
};

/// A store with nothing in it.
struct EmptyStore : EmptyWorld {
    store::ProjectStore store{environment(), store::Persistence::off};
};

/// A store with nothing in it, whose live previews are made on a thread, as in the program.
struct TryingStore : EmptyWorld {
    store::ProjectStore store{environment(platform::makeThreadedLatestWork),
                              store::Persistence::off};
};

} // namespace quillabrae::bench
