// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AppPaths.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

TEST(AppPaths, AnotherHomeHoldsEverything) {
    const AppPaths paths = AppPaths::under(QStringLiteral("/somewhere/else"));
    EXPECT_EQ(paths.applicationSupport, QStringLiteral("/somewhere/else/.local/share/Quillabrae"));
    EXPECT_EQ(paths.autosaveFolder(),
              QStringLiteral("/somewhere/else/.local/share/Quillabrae/Autosave"));
    EXPECT_TRUE(paths.temporary.startsWith(QStringLiteral("/somewhere/else/")));
    EXPECT_EQ(paths.crashFolder(),
              QStringLiteral("/somewhere/else/.local/state/Quillabrae/Crashes"));
    EXPECT_TRUE(paths.preferencesFile.startsWith(QStringLiteral("/somewhere/else/")));
}

TEST(AppPaths, TheUsersDataFolderHoldsTheProgramsOwn) {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    EXPECT_EQ(AppPaths::standard().applicationSupport, data + QStringLiteral("/Quillabrae"));
}

} // namespace
} // namespace quillabrae::platform
