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

/// Contents of an owner that gives nothing to the first questions.
class SlowContents final : public QMimeData {
public:
    explicit SlowContents(int empties) : m_empties(empties) {}
    QStringList formats() const override { return {png}; }

protected:
    QVariant retrieveData(const QString&, QMetaType) const override {
        return m_empties-- > 0 ? QVariant() : QVariant(QByteArray("pixels"));
    }

private:
    mutable int m_empties;
};

TEST(ClipboardPasteboard, AsksASlowOwnerOnceMore) {
    int pauses = 0;
    const ClipboardPasteboard pasteboard([&pauses] { ++pauses; });
    QGuiApplication::clipboard()->setMimeData(std::make_unique<SlowContents>(1).release());
    EXPECT_EQ(pasteboard.data(png), QByteArray("pixels"));
    EXPECT_EQ(pauses, 1);
    QGuiApplication::clipboard()->setMimeData(std::make_unique<SlowContents>(2).release());
    EXPECT_EQ(pasteboard.data(png), QByteArray());
    EXPECT_EQ(pauses, 2);
}

TEST(ClipboardPasteboard, DoesNotWaitForATypeThatIsNotOnOffer) {
    int pauses = 0;
    const ClipboardPasteboard pasteboard([&pauses] { ++pauses; });
    QGuiApplication::clipboard()->setText(QStringLiteral("words"));
    EXPECT_EQ(pasteboard.data(png), QByteArray());
    EXPECT_EQ(pauses, 0);
}

TEST(ClipboardPasteboard, LooksOnceMoreIntoAnEmptyClipboard) {
    const ClipboardPasteboard pasteboard(
        [] { QGuiApplication::clipboard()->setText(QStringLiteral("late")); });
    QGuiApplication::clipboard()->clear();
    EXPECT_EQ(pasteboard.types(), QStringList{MimeTypes::text});
}

TEST(ClipboardPasteboard, MakesTheBytesOfACopyWhenTheyAreAskedFor) {
    ClipboardPasteboard pasteboard;
    int made = 0;
    const int before = pasteboard.changeCount();
    ASSERT_TRUE(pasteboard.write(
        {{png,
          [&made] {
              ++made;
              return QByteArray("pixels");
          }},
         {QStringLiteral("com.example.private"), [] { return QByteArray("{}"); }}}));
    EXPECT_EQ(pasteboard.changeCount(), before + 1);
    EXPECT_EQ(pasteboard.types(), QStringList({png, QStringLiteral("com.example.private")}));
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasImage());
    EXPECT_EQ(made, 0);
    EXPECT_EQ(pasteboard.data(png), QByteArray("pixels"));
    EXPECT_EQ(pasteboard.data(QStringLiteral("com.example.private")), QByteArray("{}"));
    EXPECT_EQ(made, 1);
    QGuiApplication::clipboard()->clear();
}

TEST(ClipboardPasteboard, LeavesItsFormsBehindWithTheFavouriteLast) {
    ClipboardPasteboard pasteboard;
    const auto bytes = [] { return QByteArray("bytes"); };
    ASSERT_TRUE(pasteboard.write({{png, bytes}, {svg, bytes}}));
    pasteboard.leaveBehind();
    EXPECT_EQ(pasteboard.types(), QStringList({svg, png}));
    EXPECT_EQ(pasteboard.data(png), QByteArray("bytes"));
    QGuiApplication::clipboard()->setText(QStringLiteral("another's"));
    pasteboard.leaveBehind();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("another's"));
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

TEST(MemoryPasteboard, TakesACopyUnlessItIsReadOnly) {
    MemoryPasteboard pasteboard;
    EXPECT_TRUE(pasteboard.write({{png, [] { return QByteArray("a"); }}}));
    EXPECT_EQ(pasteboard.data(png), QByteArray("a"));
    pasteboard.isReadOnly = true;
    EXPECT_FALSE(pasteboard.write({}));
    EXPECT_EQ(pasteboard.changeCount(), 1);
    EXPECT_EQ(pasteboard.data(png), QByteArray("a"));
}

} // namespace
} // namespace quillabrae::platform
