// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ClipboardPasteboard.h"
#include "platform/MemoryPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <gtest/gtest.h>

#include <memory>

namespace quillabrae::platform {
namespace {

const QString png = QStringLiteral("image/png");
const QString svg = QStringLiteral("image/svg+xml");

TEST(ClipboardPasteboard, OffersTheTypesAndBytesThatWereCopied) {
    const ClipboardPasteboard pasteboard;
    auto contents = std::make_unique<QMimeData>();
    contents->setData(svg, "<svg/>");
    contents->setData(png, "\x89PNG");
    QGuiApplication::clipboard()->setMimeData(contents.release());
    EXPECT_EQ(pasteboard.types(), QStringList({svg, png}));
    EXPECT_EQ(pasteboard.data(svg), QByteArray("<svg/>"));
    EXPECT_EQ(pasteboard.data(png), QByteArray("\x89PNG"));
    EXPECT_TRUE(pasteboard.data(QStringLiteral("image/tiff")).isEmpty());
}

TEST(ClipboardPasteboard, CountsEachChangeOfTheContents) {
    const ClipboardPasteboard pasteboard;
    const int before = pasteboard.changeCount();
    QGuiApplication::clipboard()->setText(QStringLiteral("one"));
    const int after = pasteboard.changeCount();
    EXPECT_GT(after, before);
    EXPECT_EQ(pasteboard.changeCount(), after);
}

TEST(MemoryPasteboard, EachPutReplacesTheContentsAndCounts) {
    MemoryPasteboard pasteboard;
    EXPECT_TRUE(pasteboard.types().isEmpty());
    pasteboard.put({{png, "a"}, {svg, "b"}});
    EXPECT_EQ(pasteboard.types(), QStringList({png, svg}));
    pasteboard.put({{svg, "c"}});
    EXPECT_EQ(pasteboard.data(svg), QByteArray("c"));
    EXPECT_TRUE(pasteboard.data(png).isEmpty());
    EXPECT_EQ(pasteboard.changeCount(), 2);
}

} // namespace
} // namespace quillabrae::platform
