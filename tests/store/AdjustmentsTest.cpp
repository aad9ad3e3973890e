// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"
#include "raster/DecodeCache.h"
#include "store/StoreTest.h"

#include <QCoreApplication>
#include <QThread>

namespace quillabrae::store {
namespace {

using Action = AlignObjectAction;
using Preset = ColorRemovalPreset;
using model::PaintProject;

/// A layer of 10 by 8 with a red object of 3 by 2 whose top left is at `place`, on nothing.
model::PngBytes objectAt(QPoint place) {
    QImage image(10, 8, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) image.setPixelColor(place.x() + x, place.y() + y, Qt::red);
    return raster::encodedImage(raster::RasterImage::fromQImage(std::move(image)));
}

class Adjustments : public StoreTest {
protected:
    Adjustments() { open(objectAt({4, 3})); }

    void open(const model::PngBytes& layer) {
        store = makeStore(Persistence::on);
        id = store->createUntitledProject(10, 8, 96).id;
        setLayer(layer);
    }
    void setLayer(const std::optional<model::PngBytes>& bytes) {
        store->editActiveProject(
            [&](PaintProject& edited) { edited.layers.front().bitmapPNGData = bytes; });
        store->recordHistory(id, QStringLiteral("Start"), QStringLiteral("pencil"));
    }
    void lockLayer() {
        store->editActiveProject(
            [](PaintProject& edited) { edited.layers.front().isLocked = true; });
    }
    const PaintProject& project() const { return *store->project(id); }
    QImage pixels() const {
        return raster::decodedImage(*project().layers.front().bitmapPNGData).toQImage();
    }
    /// Where the object's top left is now; (-1, -1) for none.
    QPoint place() const {
        const QImage image = pixels();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y).alpha() > 0) return {x, y};
        return {-1, -1};
    }
    QString lastTitle() const { return store->history(id).entries.back().title; }
    std::size_t entryCount() const { return store->history(id).entries.size(); }
    QString status() const { return store->statusMessage(); }

    std::unique_ptr<ProjectStore> store;
    QUuid id;
};

struct AlignCase {
    Action action;
    QString title;
    QPoint place;
};

TEST_F(Adjustments, EachAlignmentMovesTheObjectToItsPlace) {
    const AlignCase cases[] = {
        {Action::topLeft, QStringLiteral("Top Left"), {0, 0}},
        {Action::topCenter, QStringLiteral("Top Center"), {3, 0}},
        {Action::topRight, QStringLiteral("Top Right"), {7, 0}},
        {Action::middleLeft, QStringLiteral("Middle Left"), {0, 3}},
        {Action::center, QStringLiteral("Center"), {3, 3}},
        {Action::middleRight, QStringLiteral("Middle Right"), {7, 3}},
        {Action::bottomLeft, QStringLiteral("Bottom Left"), {0, 6}},
        {Action::bottomCenter, QStringLiteral("Bottom Center"), {3, 6}},
        {Action::bottomRight, QStringLiteral("Bottom Right"), {7, 6}},
        {Action::horizontalLeft, QStringLiteral("Align Left"), {0, 4}},
        {Action::horizontalCenter, QStringLiteral("Center Horizontally"), {3, 4}},
        {Action::horizontalRight, QStringLiteral("Align Right"), {7, 4}},
        {Action::verticalTop, QStringLiteral("Align Top"), {5, 0}},
        {Action::verticalMiddle, QStringLiteral("Center Vertically"), {5, 3}},
        {Action::verticalBottom, QStringLiteral("Align Bottom"), {5, 6}},
    };
    EXPECT_EQ(std::size(cases), allAlignObjectActions().size());
    for (const auto& [action, name, expected] : cases) {
        setLayer(objectAt({5, 4}));
        EXPECT_TRUE(store->applyAlignObject(action, AdjustmentRun::recorded));
        EXPECT_EQ(place(), expected) << qPrintable(name);
        EXPECT_EQ(status(), name + QStringLiteral(" applied"));
        EXPECT_EQ(lastTitle(), QStringLiteral("Align Object"));
        EXPECT_EQ(store->history(id).entries.back().symbolName, QStringLiteral("square.grid.3x3"));
        EXPECT_EQ(alignObjectActionFromRawText(rawText(action)), action);
    }
}

TEST_F(Adjustments, AlignmentIsWithinTheSelection) {
    store->editActiveProject([](PaintProject& edited) {
        edited.isCanvasSelected = true;
        edited.pixelSelection = model::PixelSelection{5, 2, 5, 5, std::nullopt};
    });
    // Of the object at 4 to 7 only two columns are within.
    EXPECT_TRUE(store->applyAlignObject(Action::topRight, AdjustmentRun::recorded));
    const QImage image = pixels();
    EXPECT_GT(image.pixelColor(4, 3).alpha(), 0);
    EXPECT_GT(image.pixelColor(8, 2).alpha(), 0);
    EXPECT_GT(image.pixelColor(9, 3).alpha(), 0);
    EXPECT_EQ(image.pixelColor(5, 3).alpha(), 0);
    EXPECT_EQ(project().pixelSelection->x, 5);
}

TEST_F(Adjustments, WhatCannotBeAlignedSaysSoAndRecordsNothing) {
    const auto refuse = [this] {
        const auto before = project();
        const std::size_t entries = entryCount();
        EXPECT_FALSE(store->applyAlignObject(Action::topLeft, AdjustmentRun::recorded));
        EXPECT_EQ(status(), QStringLiteral("Nothing to align"));
        EXPECT_EQ(project(), before);
        EXPECT_EQ(entryCount(), entries);
    };
    setLayer(objectAt({0, 0}));
    refuse();
    setLayer(std::nullopt);
    refuse();
    setLayer(objectAt({4, 3}));
    store->editActiveProject([](PaintProject& edited) {
        edited.pixelSelection = model::PixelSelection{20, 20, 5, 5, std::nullopt};
    });
    refuse();
    // What found nothing to align can still be repeated.
    store->editActiveProject([](PaintProject& edited) { edited.pixelSelection.reset(); });
    store->repeatLastAction();
    EXPECT_EQ(place(), QPoint(0, 0));
}

TEST_F(Adjustments, ALockedLayerRefusesBoth) {
    lockLayer();
    const auto before = project();
    EXPECT_FALSE(store->applyAlignObject(Action::topLeft, AdjustmentRun::recorded));
    EXPECT_EQ(status(), QStringLiteral("Selected layer is locked"));
    store->setStatusMessage(QString());
    EXPECT_FALSE(store->applyColorRemoval({}, AdjustmentRun::recorded));
    EXPECT_EQ(status(), QStringLiteral("Selected layer is locked"));
    EXPECT_EQ(project(), before);
    EXPECT_FALSE(store->lastRepeatableAction());
}

TEST_F(Adjustments, WithoutALayerOrAProjectNothingHappens) {
    store->editActiveProject(
        [](PaintProject& edited) { edited.selectedLayerID = QUuid::createUuid(); });
    store->setStatusMessage(QStringLiteral("quiet"));
    EXPECT_FALSE(store->applyAlignObject(Action::topLeft, AdjustmentRun::recorded));
    EXPECT_FALSE(store->applyColorRemoval({}, AdjustmentRun::recorded));
    store->closeProject(id);
    EXPECT_FALSE(store->applyAlignObject(Action::topLeft, AdjustmentRun::recorded));
    store->beginAlignObjectPreview();
    store->beginColorRemovalPreview();
    store->previewColorRemoval({});
    EXPECT_EQ(status(), QStringLiteral("quiet"));
    store->commitAlignObjectPreview();
    EXPECT_EQ(status(), QStringLiteral("Align cancelled"));
    store->commitColorRemovalPreview();
    EXPECT_EQ(status(), QStringLiteral("Color removal cancelled"));
}

TEST_F(Adjustments, ACancelledAlignmentLeavesTheProjectExactlyAsItWas) {
    const auto before = project();
    const std::size_t entries = entryCount();
    store->beginAlignObjectPreview();
    EXPECT_TRUE(store->previewAlignObject(Action::topLeft));
    EXPECT_EQ(status(), QStringLiteral("Previewing Top Left"));
    EXPECT_EQ(place(), QPoint(0, 0));
    EXPECT_EQ(project().lastModified, before.lastModified);
    EXPECT_TRUE(store->previewAlignObject(Action::horizontalRight));
    EXPECT_EQ(place(), QPoint(7, 3));
    store->cancelAlignObjectPreview();
    EXPECT_EQ(project(), before);
    EXPECT_EQ(entryCount(), entries);
    EXPECT_EQ(status(), QStringLiteral("Align cancelled"));
    EXPECT_FALSE(store->alignPreviewAction());
}

TEST_F(Adjustments, WhatCompletesMeanwhileIsNotTakenBack) {
    const auto recovered = [this] {
        const auto session =
            persistence::AppPersistenceService::loadAutosavedSession(recoveryFile());
        return session.value().projects.front().layers;
    };
    store->beginAlignObjectPreview();
    store->beginColorRemovalPreview();
    store->addLayer();
    const PaintProject withLayer = project();
    EXPECT_EQ(recovered(), withLayer.layers);
    store->cancelAlignObjectPreview();
    EXPECT_EQ(project(), withLayer);
    store->undo(id);
    const PaintProject undone = project();
    store->cancelColorRemovalPreview();
    EXPECT_EQ(project(), undone);
    EXPECT_EQ(recovered(), undone.layers);
}

TEST_F(Adjustments, ACommittedAlignmentIsOneEntryAndCanBeRepeated) {
    const std::size_t entries = entryCount();
    store->beginAlignObjectPreview();
    store->previewAlignObject(Action::topLeft);
    store->previewAlignObject(Action::bottomRight);
    EXPECT_EQ(store->alignPreviewAction(), Action::bottomRight);
    store->commitAlignObjectPreview();
    EXPECT_EQ(place(), QPoint(7, 6));
    EXPECT_EQ(status(), QStringLiteral("Bottom Right applied"));
    EXPECT_EQ(entryCount(), entries + 1);
    EXPECT_EQ(lastTitle(), QStringLiteral("Align Object"));
    store->undo(id);
    EXPECT_EQ(place(), QPoint(4, 3));
    store->repeatLastAction();
    EXPECT_EQ(place(), QPoint(7, 6));
    EXPECT_EQ(entryCount(), entries + 1);
}

TEST_F(Adjustments, AFailedTryCommitsAsACancel) {
    setLayer(std::nullopt);
    const auto before = project();
    store->beginAlignObjectPreview();
    EXPECT_FALSE(store->previewAlignObject(Action::topLeft));
    EXPECT_EQ(status(), QStringLiteral("Nothing to align"));
    EXPECT_FALSE(store->alignPreviewAction());
    store->commitAlignObjectPreview();
    EXPECT_EQ(status(), QStringLiteral("Align cancelled"));
    EXPECT_EQ(project(), before);
    EXPECT_FALSE(store->lastRepeatableAction());
}

TEST_F(Adjustments, RemovingAColorTakesItOutOfTheWholeLayer) {
    store->editActiveProject([](PaintProject& edited) {
        edited.pixelSelection = model::PixelSelection{0, 0, 1, 1, std::nullopt};
    });
    EXPECT_TRUE(store->applyColorRemoval({1.0, 0.0, Preset::red}, AdjustmentRun::recorded));
    EXPECT_EQ(place(), QPoint(-1, -1));
    EXPECT_EQ(status(), QStringLiteral("Removed Red"));
    EXPECT_EQ(lastTitle(), QStringLiteral("Color Removal"));
    EXPECT_EQ(store->history(id).entries.back().symbolName, QStringLiteral("eraser.line.dashed"));
    EXPECT_EQ(project().pixelSelection->width, 1);
    store->undo(id);
    EXPECT_EQ(place(), QPoint(4, 3));
}

TEST_F(Adjustments, AColorThatIsNotThereSaysSo) {
    const auto before = project();
    EXPECT_FALSE(store->applyColorRemoval({1.0, 0.0, Preset::blue}, AdjustmentRun::recorded));
    EXPECT_EQ(status(), QStringLiteral("No matching color found"));
    EXPECT_EQ(project(), before);
    EXPECT_FALSE(store->lastRepeatableAction());
}

TEST_F(Adjustments, RepeatingRemovesThePrimaryColorOfThatMoment) {
    const auto paintWith = [this](const model::ColorValue& color) {
        store->editSettings(
            [&](model::PaintAppSettings& settings) { settings.primaryColor = color; });
    };
    paintWith({1.0, 0.0, 0.0, 0.2});
    EXPECT_TRUE(store->applyColorRemoval({1.0, 0.0, Preset::primary}, AdjustmentRun::recorded));
    EXPECT_EQ(status(), QStringLiteral("Removed Primary Color"));
    store->undo(id);
    paintWith({0.0, 1.0, 0.0, 1.0});
    store->repeatLastAction();
    EXPECT_EQ(status(), QStringLiteral("No matching color found"));
    EXPECT_EQ(place(), QPoint(4, 3));
}

TEST_F(Adjustments, TheLastTryOfARemovalIsWhatIsKept) {
    const auto before = project();
    const std::size_t entries = entryCount();
    store->beginColorRemovalPreview();
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    EXPECT_EQ(status(), QStringLiteral("Previewing color removal"));
    EXPECT_EQ(place(), QPoint(-1, -1));
    EXPECT_EQ(project().lastModified, before.lastModified);
    store->previewColorRemoval({1.0, 0.0, Preset::green});
    EXPECT_EQ(status(), QStringLiteral("No matching color found"));
    EXPECT_EQ(project(), before);
    EXPECT_FALSE(store->colorRemovalPreviewSettings());
    const ColorRemovalSettings last{2.0, 10.0, Preset::red};
    store->previewColorRemoval(last);
    EXPECT_EQ(store->colorRemovalPreviewSettings(), last);
    store->commitColorRemovalPreview();
    EXPECT_EQ(status(), QStringLiteral("Removed Red"));
    EXPECT_EQ(entryCount(), entries + 1);
    EXPECT_EQ(store->lastRepeatableAction(),
              RepeatablePaintAction(RepeatableActions::ColorRemoval{last}));
}

TEST_F(Adjustments, ACancelledRemovalLeavesTheProjectExactlyAsItWas) {
    const auto before = project();
    store->beginColorRemovalPreview();
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    store->cancelColorRemovalPreview();
    EXPECT_EQ(project(), before);
    EXPECT_EQ(status(), QStringLiteral("Color removal cancelled"));
    store->beginColorRemovalPreview();
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    store->previewColorRemoval({1.0, 0.0, Preset::blue});
    store->commitColorRemovalPreview();
    EXPECT_EQ(status(), QStringLiteral("Color removal cancelled"));
    EXPECT_EQ(project(), before);
}

TEST_F(Adjustments, TheRecoveryFileHoldsNoTries) {
    const auto before = project();
    store->beginColorRemovalPreview();
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    store->persistAutosavedSession();
    const auto next = makeStore();
    ASSERT_EQ(next->openProjects().size(), 1u);
    EXPECT_EQ(next->openProjects().front().layers, before.layers);
}

TEST_F(Adjustments, RepeatingWithoutAnActionSaysSo) {
    store->repeatLastAction();
    EXPECT_EQ(status(), QStringLiteral("No action to repeat"));
}

TEST_F(Adjustments, RepeatingWorksOnWhateverIsActive) {
    store->applyAlignObject(Action::topLeft, AdjustmentRun::recorded);
    store->undo(id);
    EXPECT_TRUE(store->lastRepeatableAction());
    id = store->createUntitledProject(10, 8, 96).id;
    setLayer(objectAt({2, 2}));
    store->repeatLastAction();
    EXPECT_EQ(place(), QPoint(0, 0));
}

// With tries that are made on another thread

class LiveRemoval : public Adjustments {
protected:
    LiveRemoval() {
        makeLatestWork = platform::makeThreadedLatestWork;
        store = makeStore(Persistence::off);
        id = store->createUntitledProject(1500, 1000, 96).id;
        QImage image(1500, 1000, QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixelColor(x, y, x < 700 ? QColor(Qt::red) : QColor(0, 64, 255));
        setLayer(raster::encodedImage(raster::RasterImage::fromQImage(std::move(image))));
        before = project();
        store->beginColorRemovalPreview();
    }
    static void letResultsArrive() {
        for (int i = 0; i < 40; ++i) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
    }
    /// Lets results arrive until it is so.
    bool waitFor(const std::function<bool()>& question) const {
        for (int i = 0; i < 2000 && !question(); ++i) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
        return question();
    }

    PaintProject before;
};

TEST_F(LiveRemoval, AReducedPictureComesFirstAndThenTheWhole) {
    std::vector<QSize> shown;
    QObject::connect(store.get(), &ProjectStore::projectChanged, store.get(),
                     [&] { shown.push_back(pixels().size()); });
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    EXPECT_EQ(project(), before);
    ASSERT_TRUE(waitFor([this] { return store->colorRemovalPreviewSettings().has_value(); }));
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_LT(shown.front().width(), 1500);
    EXPECT_EQ(shown.back(), QSize(1500, 1000));
    EXPECT_EQ(place(), QPoint(700, 0));
}

TEST_F(LiveRemoval, NewerSettingsOvertakeOlderOnes) {
    for (int threshold = 0; threshold < 40; ++threshold)
        store->previewColorRemoval({1.0, double(threshold), Preset::red});
    const ColorRemovalSettings last{1.0, 0.0, Preset::blue};
    store->previewColorRemoval(last);
    ASSERT_TRUE(waitFor([this, &last] { return store->colorRemovalPreviewSettings() == last; }));
    EXPECT_EQ(pixels().pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(pixels().pixelColor(1400, 0).alpha(), 0);
}

TEST_F(LiveRemoval, CommittingWaitsForTheLatestTry) {
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    store->previewColorRemoval({1.0, 0.0, Preset::blue});
    store->commitColorRemovalPreview();
    EXPECT_EQ(status(), QStringLiteral("Removed Blue"));
    EXPECT_EQ(pixels().size(), QSize(1500, 1000));
    EXPECT_EQ(pixels().pixelColor(1400, 0).alpha(), 0);
    const auto kept = project();
    letResultsArrive();
    EXPECT_EQ(project(), kept);
}

TEST_F(LiveRemoval, NothingIsShownAfterACancel) {
    store->previewColorRemoval({1.0, 0.0, Preset::red});
    store->cancelColorRemovalPreview();
    letResultsArrive();
    EXPECT_EQ(project(), before);
    EXPECT_EQ(status(), QStringLiteral("Color removal cancelled"));
}

} // namespace
} // namespace quillabrae::store
