// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/WindowRole.h"
#include "store/StoreTest.h"

#include <gtest/gtest.h>

namespace quillabrae::shell {

TEST(WindowRole, GivesEachWindowItsSizesAndName) {
    const WindowTraits editor = windowTraits(WindowRole::editor);
    EXPECT_EQ(editor.identifier, QStringLiteral("Quillabrae.Editor"));
    EXPECT_EQ(editor.size, QSize(1180, 820));
    EXPECT_EQ(editor.minimumSize, QSize(1100, 760));

    const WindowTraits welcome = windowTraits(WindowRole::welcome);
    EXPECT_EQ(welcome.title, QStringLiteral("Welcome to Quillabrae"));
    EXPECT_EQ(welcome.size, QSize(480, 632));
    EXPECT_EQ(welcome.frame, WindowTraits::Frame::none);

    const WindowTraits library = windowTraits(WindowRole::pluginLibrary);
    EXPECT_EQ(library.size, QSize(980, 680));
    EXPECT_EQ(library.minimumSize, QSize(820, 560));

    const WindowTraits tour = windowTraits(WindowRole::paintNetQuickStart);
    EXPECT_EQ(tour.title, QStringLiteral("Paint.NET Quick Start"));
    EXPECT_EQ(tour.size, QSize(760, 610));
    EXPECT_EQ(tour.frame, WindowTraits::Frame::fixed);

    const WindowTraits settings = windowTraits(WindowRole::settings);
    EXPECT_EQ(settings.title, QStringLiteral("Settings"));
    EXPECT_EQ(settings.frame, WindowTraits::Frame::resizable);
}

TEST(EditorWindowTitle, NamesTheProjectBeforeTheProgram) {
    EXPECT_EQ(editorWindowTitle(QStringLiteral("Cat"), QStringLiteral("2.1")),
              QStringLiteral("Cat - Quillabrae v2.1"));
}

TEST(EditorWindowTitle, IsTheProgramAloneWithoutAProject) {
    EXPECT_EQ(editorWindowTitle({}, QStringLiteral("2.1")), QStringLiteral("Quillabrae v2.1"));
}

TEST(EditorWindowTitle, CountsAMissingVersionAsTheFirst) {
    EXPECT_EQ(editorWindowTitle({}, {}), QStringLiteral("Quillabrae v1.0.0"));
}

} // namespace quillabrae::shell
