// SPDX-License-Identifier: GPL-3.0-or-later
// What is painted and pressed by measure stands on the other side where text runs from right to
// left. What has a place on the canvas does not.
#include "shell/ShellTest.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/ScrollHints.h"
#include "shell/controls/SlimBar.h"
#include "shell/controls/TooltipBubble.h"
#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/AnchorPicker.h"
#include "shell/editor/ProjectTab.h"
#include "shell/editor/ProjectTabBar.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/editor/Workspace.h"
#include "shell/looks/Symbols.h"
#include "shell/panels/HistoryList.h"
#include "shell/panels/HistoryPanel.h"
#include "shell/panels/LayerList.h"
#include "shell/panels/LayerRow.h"
#include "shell/panels/LayersPanel.h"
#include "shell/welcome/RecentRow.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

namespace quillabrae::shell {
namespace {

class RightToLeft : public ShellTest {
protected:
    RightToLeft() {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        makeProject(*store);
    }
    ~RightToLeft() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

    static QAbstractButton* named(const QWidget& window, const char* name) {
        for (QAbstractButton* button : window.findChildren<QAbstractButton*>())
            if (button->accessibleName() == QLatin1StringView(name)) return button;
        return nullptr;
    }
    static int middleOf(const QWidget& part, const QWidget& window) {
        return part.mapTo(&window, part.rect().center()).x();
    }
    /// The pixels of a part that differ from its corner's.
    static int inked(const QImage& picture, const QRect& part) {
        int count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                count += picture.pixel(x, y) != picture.pixel(part.topLeft()) ? 1 : 0;
        return count;
    }
};

class RightToLeftLayers : public RightToLeft {
protected:
    RightToLeftLayers() {
        panel = std::make_unique<LayersPanel>(PanelContext{*store, [this] { ++timesConfigured; }});
        panel->resize(236, 420);
        panel->show();
        list = panel->findChild<LayerList*>();
    }
    ~RightToLeftLayers() override { panel.reset(); }

    QRect row() const { return list->visualRect(list->model()->index(0, 0)); }
    LayerRowParts parts() const { return {row(), Qt::RightToLeft}; }
    bool isVisible() const { return store->activeProject()->layers.front().isVisible; }

    int timesConfigured = 0;
    std::unique_ptr<LayersPanel> panel;
    LayerList* list = nullptr;
};

TEST_F(RightToLeftLayers, ARowIsTheMirrorImageOfTheUsualOne) {
    const LayerRowParts usual(row(), Qt::LeftToRight);
    const LayerRowParts turned = parts();
    for (const auto part : {&LayerRowParts::thumbnail, &LayerRowParts::name, &LayerRowParts::lock,
                            &LayerRowParts::visibility}) {
        EXPECT_EQ((turned.*part).size(), (usual.*part).size());
        EXPECT_EQ((turned.*part).left() - row().left(), row().right() - (usual.*part).right());
    }
    EXPECT_GT(turned.thumbnail.left(), turned.name.right());
    EXPECT_LT(turned.visibility.right(), turned.name.left());
}

TEST_F(RightToLeftLayers, TheEyeIsPressedWhereItIsSeen) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, parts().visibility.center());
    EXPECT_FALSE(isVisible());
    const QPoint usualEye = LayerRowParts(row(), Qt::LeftToRight).visibility.center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, usualEye);
    EXPECT_FALSE(isVisible());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, parts().visibility.center());
    EXPECT_TRUE(isVisible());
}

TEST_F(RightToLeftLayers, TheEyeAndThePictureArePaintedOnTheirSides) {
    const QImage shown = list->viewport()->grab().toImage();
    EXPECT_GT(inked(shown, parts().visibility), 20);
    EXPECT_GT(inked(shown, parts().thumbnail), 200);
    const QImage before = shown.copy(parts().visibility);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, parts().visibility.center());
    EXPECT_NE(list->viewport()->grab().toImage().copy(parts().visibility), before);
}

TEST_F(RightToLeftLayers, TheNameIsEditedWhereItStandsAndThePictureOpensTheProperties) {
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, parts().name.center());
    const auto* field = list->findChild<QLineEdit*>();
    ASSERT_NE(field, nullptr);
    EXPECT_LT(field->geometry().right(), parts().thumbnail.left());
    EXPECT_GT(field->geometry().left(), parts().visibility.right());
    EXPECT_EQ(timesConfigured, 0);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, parts().thumbnail.center());
    EXPECT_EQ(timesConfigured, 1);
}

TEST_F(RightToLeft, AStepOfTheHistoryHasItsSymbolAtTheRight) {
    const HistoryPanel panel(PanelContext{*store, {}});
    auto* list = panel.findChild<HistoryList*>();
    list->resize(236, 100);
    const QImage shown = list->viewport()->grab().toImage();
    const QRect row = list->visualRect(list->model()->index(0, 0));
    // Between the frame of the chosen step and the symbol's place there is nothing.
    EXPECT_GT(inked(shown, {row.right() - 24, row.top() + 4, 20, 18}), 20);
    EXPECT_EQ(inked(shown, {row.left() + 4, row.top() + 4, 20, 18}), 0);
}

TEST_F(RightToLeft, ATabIsClosedAtItsLeftAndHasItsPictureAtTheRight) {
    ProjectTab tab(QUuid::createUuid());
    tab.setLook({.title = QStringLiteral("lake"), .isActive = false, .isUnsaved = true});
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::red);
    tab.setThumbnail(picture);
    tab.resize(tab.sizeHint());
    tab.show();
    EXPECT_LT(middleOf(*tab.findChild<QWidget*>(QStringLiteral("closeTab")), tab), 20);
    const QImage shown = tab.grab().toImage();
    EXPECT_EQ(shown.pixelColor(tab.width() - 26, tab.height() / 2), QColor(Qt::red));
    // The mark of unsaved work, before the close button.
    EXPECT_EQ(shown.pixelColor(35, tab.height() / 2), Style::accent(tab.palette()));
}

TEST_F(RightToLeft, TabsAreHintedAtOnTheSideWhereTheyAre) {
    ProjectTabBar bar(*store, *coordinator);
    bar.resize(600, 48);
    bar.show();
    for (int number = 0; number < 20; ++number) makeProject(*store);
    runDeferred();
    const auto& hints = *bar.findChild<ScrollHints*>();
    EXPECT_TRUE(hints.hasMoreAtRight());
    EXPECT_FALSE(hints.hasMoreAtLeft());
    store->setActiveProjectID(store->openProjects().front().id);
    runDeferred();
    EXPECT_FALSE(hints.hasMoreAtRight());
    EXPECT_TRUE(hints.hasMoreAtLeft());
    // To the left, where there is more.
    QWheelEvent left({}, {}, {}, {120, 0}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&bar, &left);
    EXPECT_TRUE(hints.hasMoreAtRight());
}

TEST_F(RightToLeft, PanelsStandInTheOtherCorners) {
    Workspace workspace({*store, *coordinator}, {});
    workspace.resize(1180, 700);
    workspace.show();
    runDeferred();
    EXPECT_GT(workspace.findChild<ToolsPalette*>()->x(), 1000);
    EXPECT_LT(workspace.findChild<LayersPanel*>()->geometry().right(), 300);
    EXPECT_LT(workspace.findChild<HistoryPanel*>()->geometry().right(), 300);
}

TEST_F(RightToLeft, PlacesOnTheCanvasStayWhereTheyAre) {
    AnchorPicker anchors(model::CanvasAnchor::center);
    anchors.show();
    EXPECT_LT(middleOf(*named(anchors, "Top Left"), anchors),
              middleOf(*named(anchors, "Top Right"), anchors));
    AlignObjectDialog align([](store::AlignObjectAction) {});
    align.show();
    EXPECT_LT(middleOf(*named(align, "Top Left"), align),
              middleOf(*named(align, "Top Right"), align));
    EXPECT_LT(middleOf(*named(align, "Align Left"), align),
              middleOf(*named(align, "Align Right"), align));
}

TEST_F(RightToLeft, ATooltipStandsOnTheOtherSideOfATool) {
    QWidget window;
    window.resize(600, 200);
    TooltipBubble bubble({QStringLiteral("Brush"), {}}, &window);
    const QRect tool(300, 80, 30, 30);
    bubble.place(tool, HoverTooltipPlacement::trailing);
    EXPECT_LT(bubble.geometry().right(), tool.left());
    bubble.place(tool, HoverTooltipPlacement::aboveLeading);
    EXPECT_EQ(bubble.geometry().right(), tool.right());
    bubble.place(tool, HoverTooltipPlacement::aboveTrailing);
    EXPECT_EQ(bubble.x(), tool.x());
    bubble.place(tool, HoverTooltipPlacement::below);
    EXPECT_NEAR(bubble.geometry().center().x(), tool.center().x(), 1);
}

TEST_F(RightToLeft, WhatPointsBackPointsToTheRight) {
    const auto drawn = [](const char* symbol) {
        return Symbols::icon(QString::fromLatin1(symbol)).pixmap(22, 22).toImage();
    };
    const QImage back = drawn("arrow.uturn.backward");
    const QImage on = drawn("arrow.uturn.forward");
    const QImage folded = drawn("chevron.right");
    const QImage left = drawn("arrow.left");
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    EXPECT_EQ(back, drawn("arrow.uturn.forward"));
    EXPECT_EQ(on, drawn("arrow.uturn.backward"));
    EXPECT_NE(folded, drawn("chevron.right"));
    EXPECT_EQ(left, drawn("arrow.left"));
}

TEST_F(RightToLeft, ProgressGrowsFromTheRight) {
    SlimBar bar;
    bar.resize(100, 6);
    bar.showFraction(0.3);
    const QImage shown = bar.grab().toImage();
    EXPECT_EQ(shown.pixelColor(80, 3), Style::accent(bar.palette()));
    EXPECT_NE(shown.pixelColor(50, 3), Style::accent(bar.palette()));
    EXPECT_EQ(shown.pixelColor(50, 3), shown.pixelColor(20, 3));
}

TEST_F(RightToLeft, ARecentProjectIsTakenOffAtItsLeft) {
    RecentRow row({.project = {.title = QStringLiteral("lake"), .url = {}, .openedAt = {}},
                   .folder = QStringLiteral("~/Pictures")});
    row.resize(400, row.height());
    row.show();
    EXPECT_LT(middleOf(*row.findChild<QAbstractButton*>(), row), 40);
    const QImage shown = row.grab().toImage();
    EXPECT_GT(inked(shown, {300, 2, 98, row.height() - 4}), 20);
    EXPECT_EQ(inked(shown, {100, 2, 100, row.height() - 4}), 0);
}

} // namespace
} // namespace quillabrae::shell
