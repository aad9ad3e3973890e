// SPDX-License-Identifier: GPL-3.0-or-later
// Which commands of the store are counted, and what is told of them.
#include "raster/DecodeCache.h"
#include "store/DroppedContents.h"
#include "store/StoreTest.h"

namespace quillabrae::store {
namespace {

using persistence::SaveFormat;
using services::AnalyticsData;
using services::AppAnalyticsEvent;
using Event = tests::NotedUsage::Event;

class UsageEventsTest : public StoreTest {
protected:
    UsageEventsTest() : store(makeStore()) {}

    /// What was counted since this was asked before.
    std::vector<Event> counted() { return std::exchange(usage.events, {}); }
    static Event event(AppAnalyticsEvent event, const AnalyticsData& data = {}) {
        return {event, data};
    }
    static Event ofImage(const QString& format) {
        return event(AppAnalyticsEvent::projectOpened,
                     {{QStringLiteral("kind"), QStringLiteral("image")},
                      {QStringLiteral("format"), format}});
    }
    static Event ofClipboard() {
        return event(AppAnalyticsEvent::projectCreated,
                     {{QStringLiteral("source"), QStringLiteral("clipboard")}});
    }
    static Event ofFormat(AppAnalyticsEvent kind, const QString& format) {
        return event(kind, {{QStringLiteral("format"), format}});
    }
    model::PastedImage pastedImage(int width = 5, int height = 4) const {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(Qt::red);
        model::PastedImage pasted;
        pasted.pngData = raster::encodedImage(raster::RasterImage::fromQImage(std::move(image)));
        pasted.width = width;
        pasted.height = height;
        return pasted;
    }

    std::unique_ptr<ProjectStore> store;
};

TEST_F(UsageEventsTest, ANewProjectIsCounted) {
    makeProject(*store);
    EXPECT_EQ(counted(), std::vector{event(AppAnalyticsEvent::projectCreated)});
}

TEST_F(UsageEventsTest, AProjectOfAPictureIsCountedWhenItIsToldWhereThatComesFrom) {
    store->createProject(pastedImage(), QStringLiteral("clipboard"));
    EXPECT_EQ(counted(), std::vector{ofClipboard()});
    store->createProject(pastedImage());
    EXPECT_TRUE(counted().empty());
}

TEST_F(UsageEventsTest, PastingCountsOnlyWhereTheUserChoosesANewProject) {
    makeProject(*store);
    counted();
    store->pasteImage(pastedImage());
    panels.pasteChoices = {PasteImageChoice::cancel, PasteImageChoice::expandCanvas,
                           PasteImageChoice::openAsNewProject};
    store->pasteImage(pastedImage(20, 20));
    store->pasteImage(pastedImage(20, 20));
    EXPECT_TRUE(counted().empty());
    store->pasteImage(pastedImage(40, 40));
    EXPECT_EQ(counted(), std::vector{ofClipboard()});
    store->closeAllProjects();
    store->pasteImageIntoActiveProject(pastedImage(), PastedCanvas::kept);
    EXPECT_TRUE(counted().empty());
}

TEST_F(UsageEventsTest, ADropOnTheWelcomeWindowCountsAsAPastedPicture) {
    DroppedContents contents;
    contents.files = {writePicture(QStringLiteral("red.png"))};
    store->acceptDrop(contents, DropTarget::welcome);
    EXPECT_EQ(counted(), std::vector{ofClipboard()});
}

TEST_F(UsageEventsTest, OpeningAPackageIsCounted) {
    makeProject(*store);
    saveTo(*store, QStringLiteral("sail.quillabrae"));
    counted();
    ASSERT_TRUE(store->openFile(file(QStringLiteral("sail.quillabrae"))));
    EXPECT_EQ(counted(), std::vector{event(AppAnalyticsEvent::projectOpened)});
}

TEST_F(UsageEventsTest, OpeningAnImageTellsItsKind) {
    const QUrl png = writePicture(QStringLiteral("red.png"));
    for (const auto& [name, format] : std::vector<std::pair<QString, QString>>{
             {QStringLiteral("red.png"), QStringLiteral("png")},
             {QStringLiteral("copy.PNG"), QStringLiteral("png")},
             {QStringLiteral("copy.jpeg"), QStringLiteral("jpeg")},
             {QStringLiteral("copy.jpe"), QStringLiteral("other")},
             {QStringLiteral("copy.secret"), QStringLiteral("other")},
             {QStringLiteral("copy"), QStringLiteral("other")}}) {
        QFile::copy(png.toLocalFile(), file(name).toLocalFile());
        ASSERT_TRUE(store->openFile(file(name))) << qPrintable(name);
        EXPECT_EQ(counted(), std::vector{ofImage(format)}) << qPrintable(name);
    }
}

TEST_F(UsageEventsTest, SavingTellsTheFormat) {
    makeProject(*store);
    counted();
    saveTo(*store, QStringLiteral("sail.quillabrae"));
    EXPECT_EQ(counted(),
              std::vector{ofFormat(AppAnalyticsEvent::projectSaved, QStringLiteral("quillabrae"))});
    for (const auto& [format, extension] :
         std::vector<std::pair<SaveFormat, QString>>{{SaveFormat::png, QStringLiteral("png")},
                                                     {SaveFormat::jpeg, QStringLiteral("jpg")},
                                                     {SaveFormat::bmp, QStringLiteral("bmp")}}) {
        saveTo(*store, QStringLiteral("sail.") + extension, format);
        EXPECT_EQ(counted(), std::vector{ofFormat(AppAnalyticsEvent::imageExported, extension)});
    }
    store->saveActiveProject();
    EXPECT_EQ(counted(),
              std::vector{ofFormat(AppAnalyticsEvent::imageExported, QStringLiteral("bmp"))});
}

TEST_F(UsageEventsTest, WhatFailsOrIsCancelledIsNotCounted) {
    makeProject(*store);
    counted();
    store->saveActiveProjectAs();
    EXPECT_FALSE(store->saveProject(0, {file(QStringLiteral("missing/a.png")), SaveFormat::png}));
    EXPECT_FALSE(store->openFile(file(QStringLiteral("missing.png"))));
    EXPECT_FALSE(store->openFile(file(QStringLiteral("missing.quillabrae"))));
    store->acceptDrop({}, DropTarget::welcome);
    EXPECT_TRUE(counted().empty());
}

TEST_F(UsageEventsTest, WorkThatComesBackIsNotCounted) {
    makeProject(*store);
    edit(*store);
    store.reset();
    counted();
    store = makeStore();
    EXPECT_EQ(store->openProjects().size(), 1U);
    EXPECT_TRUE(counted().empty());
}

TEST_F(UsageEventsTest, NothingOfTheUsersIsTold) {
    const QString canary = QStringLiteral("canary");
    const QUrl picture = writePicture(canary + QStringLiteral(".png"));
    QFile::copy(picture.toLocalFile(), file(QStringLiteral("a.") + canary).toLocalFile());
    ASSERT_TRUE(store->openFile(picture));
    ASSERT_TRUE(store->openFile(file(QStringLiteral("a.") + canary)));
    saveTo(*store, canary + QStringLiteral(".quillabrae"));
    saveTo(*store, canary + QStringLiteral(".png"), SaveFormat::png);
    const auto told = counted();
    EXPECT_EQ(told.size(), 4U);
    for (const Event& each : told)
        for (auto entry = each.data.cbegin(); entry != each.data.cend(); ++entry)
            EXPECT_FALSE((entry.key() + entry.value()).contains(canary));
}

} // namespace
} // namespace quillabrae::store
