// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/LabeledSlider.h"
#include "shell/panels/LayerList.h"
#include "shell/panels/LayerListModel.h"
#include "shell/panels/LayerRow.h"
#include "shell/panels/LayersPanel.h"
#include "store/StoreTest.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

namespace quillabrae::shell {
namespace {

class LayersPanelTest : public store::StoreTest {
protected:
    LayersPanelTest() {
        makeProject(*store);
        panel = std::make_unique<LayersPanel>(PanelContext{*store, [this] { ++timesConfigured; }});
        panel->resize(236, 420);
        panel->show();
    }

    LayerList* list() const { return panel->findChild<LayerList*>(); }
    const LayerListModel& model() const {
        return *qobject_cast<const LayerListModel*>(list()->model());
    }
    QAbstractButton* button(const char* title) const {
        for (QAbstractButton* candidate : panel->findChildren<QAbstractButton*>()) {
            if (candidate->accessibleName() == QLatin1StringView(title)) return candidate;
        }
        return nullptr;
    }
    /// The names from the top of the stack.
    QStringList names() const {
        QStringList names;
        const auto& layers = store->activeProject()->layers;
        for (const auto& layer : layers) names.prepend(layer.name);
        return names;
    }
    void addLayers(int count) const {
        for (int added = 0; added < count; ++added) store->addLayer();
    }
    QRect rowRect(int row) const { return list()->visualRect(model().index(row, 0)); }
    LayerRowParts partsOf(int row) const { return {rowRect(row), list()->layoutDirection()}; }
    QPoint nameOf(int row) const { return partsOf(row).name.center(); }
    QPoint eyeOf(int row) const { return partsOf(row).visibility.center(); }
    QWidget* surface() const { return list()->viewport(); }
    QStringList historyTitles() const { return titles(*store, *store->activeProjectID()); }

    void pressAndMove(int from, std::initializer_list<int> rows) const {
        QTest::mousePress(surface(), Qt::LeftButton, {}, nameOf(from));
        for (const int row : rows) QTest::mouseMove(surface(), nameOf(row));
    }
    void drag(int from, std::initializer_list<int> rows) const {
        pressAndMove(from, rows);
        QTest::mouseRelease(surface(), Qt::LeftButton, {}, nameOf(*(rows.end() - 1)));
    }

    std::unique_ptr<store::ProjectStore> store = makeStore(store::Persistence::off);
    int timesConfigured = 0;
    std::unique_ptr<LayersPanel> panel;
};

TEST_F(LayersPanelTest, ListsTheTopOfTheStackFirst) {
    addLayers(2);
    ASSERT_EQ(model().rowCount(), 3);
    EXPECT_EQ(model().index(0, 0).data().toString(), QStringLiteral("Layer 3"));
    EXPECT_EQ(model().layerID(2), store->activeProject()->layers.front().id);
}

TEST_F(LayersPanelTest, HasItsButtonsInOrderWithTheirTexts) {
    QStringList titles;
    for (const PanelButton& row : layerButtons()) titles << QString::fromLatin1(row.title);
    EXPECT_EQ(titles.join(QStringLiteral(", ")),
              QStringLiteral("New Layer, Remove Layer, Duplicate Layer, Flatten Down, Move Up, "
                             "Move Down, Layer Properties"));
    EXPECT_EQ(button("Flatten Down")->accessibleDescription(),
              QStringLiteral("Merge the selected layer into the layer immediately below it."));
}

TEST_F(LayersPanelTest, NeitherRemovesNorFlattensTheOnlyLayer) {
    EXPECT_FALSE(button("Remove Layer")->isEnabled());
    EXPECT_FALSE(button("Flatten Down")->isEnabled());
    EXPECT_FALSE(button("Move Up")->isEnabled());
    EXPECT_FALSE(button("Move Down")->isEnabled());
    EXPECT_TRUE(button("New Layer")->isEnabled());
    EXPECT_TRUE(button("Duplicate Layer")->isEnabled());
    EXPECT_TRUE(button("Layer Properties")->isEnabled());
}

TEST_F(LayersPanelTest, MovesTheTopLayerOnlyDownAndTheBottomOneOnlyUp) {
    addLayers(2);
    EXPECT_FALSE(button("Move Up")->isEnabled());
    EXPECT_TRUE(button("Move Down")->isEnabled());
    QTest::mouseClick(surface(), Qt::LeftButton, {}, nameOf(2));
    EXPECT_TRUE(button("Move Up")->isEnabled());
    EXPECT_FALSE(button("Move Down")->isEnabled());
    EXPECT_FALSE(button("Flatten Down")->isEnabled());
    EXPECT_TRUE(button("Remove Layer")->isEnabled());
}

TEST_F(LayersPanelTest, RunsTheCommandsOfItsButtons) {
    button("New Layer")->click();
    EXPECT_EQ(names(), QStringList({QStringLiteral("Layer 2"), QStringLiteral("Background")}));
    button("Move Down")->click();
    EXPECT_EQ(names(), QStringList({QStringLiteral("Background"), QStringLiteral("Layer 2")}));
    button("Move Up")->click();
    EXPECT_EQ(names().front(), QStringLiteral("Layer 2"));
    button("Duplicate Layer")->click();
    EXPECT_EQ(names().front(), QStringLiteral("Layer 2 Copy"));
    button("Flatten Down")->click();
    EXPECT_EQ(names().front(), QStringLiteral("Layer 2 + Layer 2 Copy"));
    button("Remove Layer")->click();
    EXPECT_EQ(names(), QStringList(QStringLiteral("Background")));
    button("Layer Properties")->click();
    EXPECT_EQ(timesConfigured, 1);
}

TEST_F(LayersPanelTest, IsIdleWithoutAProject) {
    store->closeProject(*store->activeProjectID());
    EXPECT_EQ(model().rowCount(), 0);
    for (const PanelButton& row : layerButtons()) EXPECT_FALSE(button(row.title)->isEnabled());
}

TEST_F(LayersPanelTest, SelectsTheRowThatIsPressedWithoutAnEdit) {
    addLayers(1);
    const auto before = historyTitles();
    QTest::mouseClick(surface(), Qt::LeftButton, {}, nameOf(1));
    EXPECT_EQ(store->activeProject()->selectedLayerID, store->activeProject()->layers.front().id);
    EXPECT_TRUE(list()->selectionModel()->isSelected(model().index(1, 0)));
    EXPECT_EQ(historyTitles(), before);
}

TEST_F(LayersPanelTest, LeavesTheKeyboardWhereItIsWhenARowIsPressed) {
    EXPECT_FALSE(list()->focusPolicy() & Qt::ClickFocus);
}

TEST_F(LayersPanelTest, ShowsAndHidesByTheEye) {
    const QDateTime before = store->activeProject()->lastModified;
    QTest::mouseClick(surface(), Qt::LeftButton, {}, eyeOf(0));
    EXPECT_FALSE(store->activeProject()->layers.front().isVisible);
    EXPECT_NE(store->activeProject()->lastModified, before);
    EXPECT_EQ(historyTitles().last(), QStringLiteral("Layer Visibility"));
    EXPECT_EQ(model().index(0, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    QTest::mouseClick(surface(), Qt::LeftButton, {}, eyeOf(0));
    EXPECT_TRUE(store->activeProject()->layers.front().isVisible);
}

TEST_F(LayersPanelTest, LeavesTheEyeAloneWhenThePointerIsLetGoElsewhere) {
    QTest::mousePress(surface(), Qt::LeftButton, {}, eyeOf(0));
    QTest::mouseRelease(surface(), Qt::LeftButton, {}, nameOf(0));
    EXPECT_TRUE(store->activeProject()->layers.front().isVisible);
}

TEST_F(LayersPanelTest, MovesALayerWhileItIsDraggedAndRecordsItOnce) {
    addLayers(3);
    const auto count = historyTitles().size();
    pressAndMove(0, {1, 2});
    EXPECT_EQ(names(), QStringList({QStringLiteral("Layer 3"), QStringLiteral("Layer 2"),
                                    QStringLiteral("Layer 4"), QStringLiteral("Background")}));
    EXPECT_EQ(historyTitles().size(), count);
    QTest::mouseRelease(surface(), Qt::LeftButton, {}, nameOf(2));
    EXPECT_EQ(historyTitles().size(), count + 1);
    EXPECT_EQ(historyTitles().last(), QStringLiteral("Move Layer"));
    EXPECT_EQ(store->history(*store->activeProjectID()).entries.back().symbolName,
              QStringLiteral("arrow.up.arrow.down"));
}

TEST_F(LayersPanelTest, RecordsADragOverThreeRowsAndBackOnce) {
    addLayers(3);
    const auto order = names();
    const auto count = historyTitles().size();
    drag(0, {1, 2, 3, 2, 1, 0});
    EXPECT_EQ(names(), order);
    EXPECT_EQ(historyTitles().size(), count + 1);
    EXPECT_EQ(historyTitles().last(), QStringLiteral("Move Layer"));
}

TEST_F(LayersPanelTest, TakesASmallMovementForAPress) {
    addLayers(1);
    const auto count = historyTitles().size();
    QTest::mousePress(surface(), Qt::LeftButton, {}, nameOf(0));
    QTest::mouseMove(surface(), nameOf(0) + QPoint(2, 1));
    QTest::mouseRelease(surface(), Qt::LeftButton, {}, nameOf(0) + QPoint(2, 1));
    EXPECT_EQ(historyTitles().size(), count);
}

TEST_F(LayersPanelTest, PutsALayerBackWhenItsDragIsCancelled) {
    addLayers(2);
    const auto order = names();
    const auto count = historyTitles().size();
    pressAndMove(0, {1, 2});
    EXPECT_NE(names(), order);
    QTest::keyClick(list(), Qt::Key_Escape);
    EXPECT_FALSE(list()->isReordering());
    EXPECT_EQ(names(), order);
    QTest::mouseRelease(surface(), Qt::LeftButton, {}, nameOf(2));
    EXPECT_EQ(historyTitles().size(), count);
}

TEST_F(LayersPanelTest, LeavesTheStackAloneWhenTheProjectChangesInTheMiddleOfADrag) {
    addLayers(2);
    const QUuid first = *store->activeProjectID();
    const auto order = names();
    pressAndMove(0, {0});
    QTest::mouseMove(surface(), rowRect(0).center() + QPoint(40, 0));
    makeProject(*store);
    QTest::mouseMove(surface(), QPoint(20, 80));
    QTest::mouseRelease(surface(), Qt::LeftButton, {}, QPoint(20, 80));
    EXPECT_FALSE(list()->isReordering());
    EXPECT_EQ(historyTitles().size(), 1);
    store->setActiveProjectID(first);
    EXPECT_EQ(names(), order);
}

TEST_F(LayersPanelTest, EditsTheNameOnADoubleClick) {
    QTest::mouseDClick(surface(), Qt::LeftButton, {}, nameOf(0));
    auto* editor = list()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->accessibleName(), QStringLiteral("Layer name"));
    editor->setText(QStringLiteral("Sky"));
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(names(), QStringList(QStringLiteral("Sky")));
    EXPECT_EQ(historyTitles().last(), QStringLiteral("Layer Properties"));
    EXPECT_EQ(timesConfigured, 0);
}

TEST_F(LayersPanelTest, KeepsTheNameOnEscapeAndOnNoChange) {
    const auto count = historyTitles().size();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        QTest::mouseDClick(surface(), Qt::LeftButton, {}, nameOf(0));
        auto* editor = list()->findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        if (key == Qt::Key_Escape) editor->setText(QStringLiteral("Sky"));
        QTest::keyClick(editor, key);
        QTest::qWait(10);
        EXPECT_EQ(names(), QStringList(QStringLiteral("Background")));
        EXPECT_EQ(historyTitles().size(), count);
    }
}

TEST_F(LayersPanelTest, MovesTheCaretWithTheArrowKeysWhileANameIsEdited) {
    addLayers(1);
    QTest::mouseDClick(surface(), Qt::LeftButton, {}, nameOf(0));
    auto* editor = list()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->end(false);
    QTest::keyClick(editor, Qt::Key_Left);
    EXPECT_EQ(editor->cursorPosition(), editor->text().size() - 1);
    QTest::keyClick(editor, Qt::Key_Down);
    EXPECT_EQ(model().selectedRow(), 0);
}

TEST_F(LayersPanelTest, OpensThePropertiesOnADoubleClickBesideTheName) {
    QTest::mouseDClick(surface(), Qt::LeftButton, {}, partsOf(0).thumbnail.center());
    EXPECT_EQ(timesConfigured, 1);
}

TEST_F(LayersPanelTest, WorksByKeyboard) {
    addLayers(1);
    panel->activateWindow();
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_EQ(model().selectedRow(), 1);
    QTest::keyClick(list(), Qt::Key_Space);
    EXPECT_FALSE(store->activeProject()->layers.front().isVisible);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(timesConfigured, 1);
}

TEST_F(LayersPanelTest, ShowsTheOpacityWhileItIsChangedAndRecordsItOnce) {
    auto* slider = panel->findChild<LabeledSlider*>()->findChild<QSlider*>();
    const auto count = historyTitles().size();
    slider->setSliderDown(true);
    slider->setValue(70);
    slider->setValue(40);
    EXPECT_EQ(store->activeProject()->layers.front().opacity, 0.4);
    EXPECT_EQ(historyTitles().size(), count);
    slider->setSliderDown(false);
    EXPECT_EQ(historyTitles().size(), count + 1);
    EXPECT_EQ(historyTitles().last(), QStringLiteral("Layer Properties"));
    store->undo(*store->activeProjectID());
    EXPECT_EQ(slider->value(), 100);
}

TEST_F(LayersPanelTest, RecordsNoOpacityThatWasUndoneBeforeItSettled) {
    edit(*store);
    auto* opacity = panel->findChild<LabeledSlider*>();
    opacity->findChild<QSlider*>()->setValue(40);
    store->undo(*store->activeProjectID());
    const auto titlesThen = historyTitles();
    QSignalSpy settled(opacity, &LabeledSlider::valueSettled);
    ASSERT_TRUE(settled.wait(5000));
    EXPECT_EQ(historyTitles(), titlesThen);
}

TEST_F(LayersPanelTest, MakesPicturesThatFollowTheLayers) {
    const auto project = store->createProject(writePicture(QStringLiteral("red.png")));
    LayerListModel rows(*store);
    rows.setThumbnailRoom({40, 30});
    const QModelIndex first = rows.index(0, 0);
    const auto picture = [&] { return first.data(Qt::DecorationRole).value<QImage>(); };
    EXPECT_TRUE(picture().isNull());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !picture().isNull(); }));
    EXPECT_EQ(picture().pixelColor(5, 5), QColor(Qt::red));
    store->invertActiveImage();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture().pixelColor(5, 5) == QColor(Qt::cyan); }));
    store->editActiveProject([](model::PaintProject& edited) {
        edited.layers.front().bitmapPNGData = model::PngBytes(QByteArray("no picture"));
    });
    // Nothing can be seen of pixels that cannot be read.
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture().pixelColor(5, 5).alpha() == 0; }));
}

} // namespace
} // namespace quillabrae::shell
