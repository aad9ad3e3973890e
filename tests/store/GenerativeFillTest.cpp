// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIImageEditService.h"
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"
#include "store/CommandTest.h"
#include "store/GenerativeFillError.h"
#include "store/GenerativeFills.h"
#include "support/ScriptedHttpClient.h"

#include <QDirIterator>

namespace quillabrae::store {
namespace {

using effects::GenerativeFillRequest;
using model::PixelSelection;
using platform::HttpFailure;
using platform::HttpReply;

/// The project of the other commands' tests, 8 by 6 and white, with a service and a key.
class GenerativeFill : public CommandTest {
protected:
    using CommandTest::fill;

    GenerativeFill() {
        keychain.saveAPIKey(QStringLiteral("sk-canary"));
        generativeFill.emplace(GenerativeFillServices{keychain, imageEdit});
        store = makeStore();
        id = makeProject(*store);
    }

    /// A fill that has the key, if there is one and the secret store is quick.
    ProjectStore::FillID fill(bool withContext = true) {
        request.providesCanvasContext = withContext;
        const auto fillID =
            store->performGenerativeFill(request, [this](const std::optional<QString>& failure) {
                ends << failure.value_or(QStringLiteral("applied"));
            });
        QCoreApplication::processEvents();
        return fillID;
    }
    /// The service's answer with a picture of one colour.
    static HttpReply picture(int width, int height, const QColor& color) {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(color);
        return picture(image);
    }
    static HttpReply picture(const QImage& image) {
        const auto png = raster::encodedImage(raster::RasterImage::fromQImage(QImage(image)));
        return {200, R"({"data":[{"b64_json":")" + png.toByteArray().toBase64() + R"("}]})"};
    }
    void selectMasked(const QRectF& rect, const QImage& mask) {
        store->editActiveProject([&](model::PaintProject& edited) {
            edited.pixelSelection =
                PixelSelection{rect.x(), rect.y(), rect.width(), rect.height(),
                               raster::encodedImage(raster::RasterImage::fromQImage(QImage(mask)))};
            edited.isCanvasSelected = true;
        });
    }
    static QImage decoded(const model::PngBytes& bytes) {
        return raster::decodedImage(bytes).toQImage();
    }
    GenerativeFillInput input() const { return *store->makeGenerativeFillInput(request); }
    QString said(GenerativeFillError error) const { return description(error); }

    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    tests::ScriptedHttpClient http;
    effects::OpenAIImageEditService imageEdit{http, QUrl(QStringLiteral("https://example.org"))};
    GenerativeFillRequest request{QStringLiteral("a hat"),
                                  effects::GenerativeFillImageModel::gptImage1, true};
    /// What each completion was called with.
    QStringList ends;
};

TEST_F(GenerativeFill, NeedsAProjectAndASelection) {
    EXPECT_FALSE(store->canGenerativeFill());
    selectRect({1, 1, 2, 2});
    EXPECT_TRUE(store->canGenerativeFill());
    store->closeAllProjects();
    EXPECT_FALSE(store->canGenerativeFill());
    fill();
    EXPECT_EQ(ends, QStringList{said(GenerativeFillError::noSelection)});
}

TEST_F(GenerativeFill, WithoutAKeyNothingIsSent) {
    selectRect({1, 1, 2, 2});
    keychain.removeAPIKey();
    expectNothing([&] { fill(); });
    EXPECT_EQ(ends, QStringList{said(GenerativeFillError::missingAPIKey)});
    keychain.saveAPIKey(QStringLiteral("sk"));
    secrets.refusal = QStringLiteral("Locked");
    fill();
    EXPECT_EQ(ends.back(), said(GenerativeFillError::missingAPIKey));
    EXPECT_TRUE(http.requests.empty());
}

TEST_F(GenerativeFill, ASelectionBesideTheCanvasSendsNothing) {
    selectRect({20, 20, 5, 5});
    expectNothing([&] { fill(); });
    selectRect({1, 1, 2, 2});
    selectNoLayer();
    fill();
    EXPECT_EQ(ends, QStringList(2, said(GenerativeFillError::noSelection)));
    EXPECT_TRUE(http.requests.empty());
}

TEST_F(GenerativeFill, SelectedPixelsGoWithAMaskThatMayChangeAllOfThem) {
    fill(0, {0, 0, 0, 0});
    paintRed(0, {2, 1, 2, 2});
    selectRect({1.5, 1, 3, 3});
    request.providesCanvasContext = false;
    const GenerativeFillInput made = input();
    const QImage image = decoded(made.imagePNGData);
    EXPECT_EQ(image.size(), QSize(4, 3));
    EXPECT_EQ(image.pixelColor(1, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    const QImage mask = decoded(made.maskPNGData);
    EXPECT_EQ(mask.size(), QSize(4, 3));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(mask.pixelColor(x, y).alpha(), 0);
    EXPECT_EQ(made.projectID, id);
    EXPECT_EQ(made.layerID, project().selectedLayerID);
    EXPECT_EQ(made.selection, *project().pixelSelection);
    EXPECT_FALSE(made.usesFullCanvasContext);
}

TEST_F(GenerativeFill, TheContextIsTheCanvasOnWhiteWithTheSelectionCutOutOfTheMask) {
    fill(0, {0, 0, 0, 0});
    paintRed(0, {2, 1, 2, 2});
    QImage soft(2, 2, QImage::Format_ARGB32);
    soft.fill(QColor(255, 255, 255, 255));
    soft.setPixelColor(1, 0, QColor(255, 255, 255, 100));
    soft.setPixelColor(1, 1, QColor(255, 255, 255, 0));
    selectMasked({3, 2, 2, 2}, soft);
    const GenerativeFillInput made = input();
    const QImage image = decoded(made.imagePNGData);
    EXPECT_EQ(image.size(), QSize(8, 6));
    EXPECT_EQ(image.pixelColor(2, 1), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(7, 5), QColor(Qt::white));
    const QImage mask = decoded(made.maskPNGData);
    EXPECT_EQ(mask.size(), QSize(8, 6));
    EXPECT_EQ(mask.pixelColor(0, 0), QColor(255, 255, 255, 255));
    EXPECT_EQ(mask.pixelColor(3, 2).alpha(), 0);
    EXPECT_EQ(mask.pixelColor(4, 2).alpha(), 155);
    EXPECT_EQ(mask.pixelColor(4, 3).alpha(), 255);
    EXPECT_TRUE(made.usesFullCanvasContext);
}

TEST_F(GenerativeFill, PutsTheReturnedPixelsIntoTheSelection) {
    selectRect({2, 1, 3, 2});
    fill();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Generating fill..."));
    EXPECT_TRUE(ends.isEmpty());
    ASSERT_TRUE(http.answer(picture(8, 6, Qt::red)));
    EXPECT_EQ(ends, QStringList{QStringLiteral("applied")});
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
    EXPECT_FALSE(project().isCanvasSelected);
    EXPECT_TRUE(project().pixelSelection.has_value());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Applied generative fill"));
    expectLastEntry(QStringLiteral("Generative Fill"), QStringLiteral("sparkles"));
    EXPECT_EQ(store->lastRepeatableAction(),
              RepeatablePaintAction(RepeatableActions::GenerativeFill{request}));
    store->undo(id);
    EXPECT_EQ(redPixels(0), QRect());
    store->redo(id);
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
}

TEST_F(GenerativeFill, IsCountedOnceItIsApplied) {
    usage.events.clear();
    selectRect({2, 1, 3, 2});
    fill();
    http.answer(HttpFailure{QStringLiteral("no network")});
    fill();
    EXPECT_TRUE(usage.events.empty());
    http.answer(picture(3, 2, Qt::red));
    EXPECT_EQ(usage.events, (std::vector<tests::NotedUsage::Event>{
                                {services::AppAnalyticsEvent::generativeFillCompleted, {}}}));
}

TEST_F(GenerativeFill, WithContextTheSelectionsPartOfTheReturnedCanvasCounts) {
    QImage returned(8, 6, QImage::Format_ARGB32);
    returned.fill(Qt::green);
    returned.setPixelColor(2, 1, Qt::red);
    selectRect({2, 1, 3, 2});
    fill();
    http.answer(picture(returned));
    EXPECT_EQ(redPixels(0), QRect(2, 1, 1, 1));
    EXPECT_EQ(pixel(0, 3, 1), QColor(Qt::green));
    EXPECT_EQ(pixel(0, 1, 1), QColor(Qt::white));
}

TEST_F(GenerativeFill, APictureOfAnotherSizeIsStretchedToTheSelection) {
    QImage halves(2, 1, QImage::Format_ARGB32);
    halves.setPixelColor(0, 0, Qt::red);
    halves.setPixelColor(1, 0, Qt::blue);
    selectRect({1, 1, 4, 3});
    fill(false);
    http.answer(picture(halves));
    EXPECT_EQ(redPixels(0), QRect(1, 1, 2, 3));
    EXPECT_EQ(pixel(0, 4, 3), QColor(Qt::blue));
}

TEST_F(GenerativeFill, WhatFailsLeavesTheProjectAsItWas) {
    selectRect({2, 1, 3, 2});
    const auto failsWith = [&](platform::HttpOutcome outcome, const QString& words) {
        fill();
        expectNothing([&] { EXPECT_TRUE(http.answer(std::move(outcome))); });
        EXPECT_EQ(ends.back(), words);
        EXPECT_EQ(store->statusMessage(), QStringLiteral("Generative fill failed: ") + words);
        EXPECT_EQ(store->statusKind(), StatusKind::failure);
        EXPECT_FALSE(store->lastRepeatableAction());
    };
    failsWith(HttpFailure{QStringLiteral("Connection refused")},
              QStringLiteral("Connection refused"));
    failsWith(HttpReply{400, R"({"error":{"message":"No."}})"}, QStringLiteral("No."));
    failsWith(HttpReply{200, R"({"data":[]})"},
              QStringLiteral("OpenAI did not return image data."));
    failsWith(HttpReply{200, R"({"data":[{"b64_json":"aGk="}]})"},
              said(GenerativeFillError::invalidGeneratedImage));
}

TEST_F(GenerativeFill, AProjectThatIsGoneIsNotFilledAndNoOtherIs) {
    selectRect({2, 1, 3, 2});
    fill();
    const QUuid other = makeProject(*store);
    selectRect({0, 0, 8, 6});
    const model::PaintProject before = *store->project(other);
    store->closeProject(id);
    http.answer(picture(8, 6, Qt::red));
    EXPECT_EQ(ends, QStringList{said(GenerativeFillError::projectChanged)});
    EXPECT_EQ(*store->project(other), before);
}

TEST_F(GenerativeFill, ALayerThatIsGoneIsNotFilled) {
    store->addLayer();
    selectRect({2, 1, 3, 2});
    fill();
    store->deleteSelectedLayer();
    expectNothing([&] { http.answer(picture(8, 6, Qt::red)); });
    EXPECT_EQ(ends, QStringList{said(GenerativeFillError::projectChanged)});
}

TEST_F(GenerativeFill, AnotherTabInFrontChangesNothing) {
    selectRect({2, 1, 3, 2});
    fill();
    const QUuid other = makeProject(*store);
    http.answer(picture(8, 6, Qt::red));
    EXPECT_EQ(ends, QStringList{QStringLiteral("applied")});
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
    EXPECT_EQ(store->activeProjectID(), other);
    EXPECT_EQ(titles(*store, other), QStringList{store->history(other).entries.front().title});
}

TEST_F(GenerativeFill, WhatWasSelectedWhenItBeganIsFilled) {
    store->addLayer();
    const QUuid layer = project().selectedLayerID;
    selectRect({2, 1, 3, 2});
    fill();
    selectRect({0, 0, 1, 1});
    select(0);
    http.answer(picture(8, 6, Qt::red));
    EXPECT_EQ(project().layers[1].id, layer);
    EXPECT_EQ(redPixels(1), QRect(2, 1, 3, 2));
    EXPECT_EQ(redPixels(0), QRect());
}

TEST_F(GenerativeFill, ACancelledFillIsNeverHeardOfAgain) {
    selectRect({2, 1, 3, 2});
    const auto first = fill();
    expectNothing([&] {
        store->cancelGenerativeFill(first);
        EXPECT_FALSE(http.answer(picture(8, 6, Qt::red)));
    });
    EXPECT_TRUE(ends.isEmpty());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Generative fill cancelled"));
    store->setStatusMessage(QStringLiteral("Other"));
    store->cancelGenerativeFill(first);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Other"));
}

TEST_F(GenerativeFill, WaitsForAStoreThatHasToBeUnlockedFirst) {
    secrets.isSlow = true;
    selectRect({2, 1, 3, 2});
    expectNothing([&] { fill(); });
    EXPECT_TRUE(http.requests.empty());
    // What is asked for is what was selected then.
    selectRect({0, 0, 1, 1});
    secrets.isSlow = false;
    QCoreApplication::processEvents();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Generating fill..."));
    ASSERT_TRUE(http.answer(picture(8, 6, Qt::red)));
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
}

TEST_F(GenerativeFill, CancelledBeforeTheKeyIsThereSendsNothing) {
    secrets.isSlow = true;
    selectRect({2, 1, 3, 2});
    store->cancelGenerativeFill(fill());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Generative fill cancelled"));
    secrets.isSlow = false;
    QCoreApplication::processEvents();
    EXPECT_TRUE(http.requests.empty());
    EXPECT_TRUE(ends.isEmpty());
}

TEST_F(GenerativeFill, AStoreThatEndsBeforeTheKeyIsThereSendsNothing) {
    secrets.isSlow = true;
    selectRect({2, 1, 3, 2});
    fill();
    store.reset();
    secrets.isSlow = false;
    QCoreApplication::processEvents();
    EXPECT_TRUE(http.requests.empty());
    EXPECT_TRUE(ends.isEmpty());
}

TEST_F(GenerativeFill, TwoAtOnceEndEachInItsPlace) {
    selectRect({0, 0, 1, 1});
    fill();
    selectRect({5, 4, 2, 2});
    fill();
    http.answer(picture(8, 6, Qt::blue));
    http.answer(picture(8, 6, Qt::red));
    EXPECT_EQ(pixel(0, 0, 0), QColor(Qt::blue));
    EXPECT_EQ(redPixels(0), QRect(5, 4, 2, 2));
    EXPECT_EQ(ends, QStringList(2, QStringLiteral("applied")));
}

TEST_F(GenerativeFill, IsRepeatedOnWhatIsSelectedNow) {
    selectRect({0, 0, 1, 1});
    fill();
    http.answer(picture(8, 6, Qt::blue));
    selectRect({5, 4, 2, 2});
    store->repeatLastAction();
    QCoreApplication::processEvents();
    ASSERT_EQ(http.requests.size(), 2U);
    http.answer(picture(8, 6, Qt::red));
    EXPECT_EQ(redPixels(0), QRect(5, 4, 2, 2));
    store->repeatLastAction();
    QCoreApplication::processEvents();
    http.answer(HttpFailure{QStringLiteral("The request timed out.")});
    EXPECT_EQ(store->statusMessage(),
              QStringLiteral("Generative fill failed: The request timed out."));
}

TEST_F(GenerativeFill, APictureIsDecodedBesideTheRunningProgram) {
    makeLatestWork = platform::makeThreadedLatestWork;
    store = makeStore(Persistence::off);
    id = makeProject(*store);
    selectRect({2, 1, 3, 2});
    fill();
    QSignalSpy entries(store.get(), &ProjectStore::historyChanged);
    http.answer(picture(8, 6, Qt::red));
    EXPECT_TRUE(ends.isEmpty());
    const auto cancelled = fill();
    http.answer(picture(8, 6, Qt::blue));
    store->cancelGenerativeFill(cancelled);
    // The first picture may have come while the second fill waited for its key.
    ASSERT_TRUE(!entries.isEmpty() || entries.wait());
    EXPECT_EQ(ends, QStringList{QStringLiteral("applied")});
    EXPECT_EQ(redPixels(0), QRect(2, 1, 3, 2));
}

TEST_F(GenerativeFill, TheKeyIsInNoFileThatTheProgramWrites) {
    selectRect({2, 1, 3, 2});
    fill();
    http.answer(HttpReply{401, R"({"error":{"message":"Bad key."}})"});
    fill();
    http.answer(picture(8, 6, Qt::red));
    saveTo(*store, QStringLiteral("a.quillabrae"));
    int files = 0;
    QDirIterator each(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        QFile file(each.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        EXPECT_FALSE(bytes.contains("sk-canary")) << qPrintable(file.fileName());
        EXPECT_FALSE(bytes.contains(QByteArray("sk-canary").toBase64())) << qPrintable(each.path());
        ++files;
    }
    EXPECT_GT(files, 2);
}

} // namespace
} // namespace quillabrae::store
