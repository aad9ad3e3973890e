// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "canvas/DraftGestures.h"
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/FloatingPanel.h"
#include "shell/editor/ColorStack.h"
#include "shell/editor/EditorWindow.h"
#include "shell/editor/EmptyWorkspace.h"
#include "shell/editor/ProjectTab.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/editor/Workspace.h"
#include "shell/panels/HistoryList.h"
#include "shell/panels/LayerList.h"

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>

namespace quillabrae::shell {
namespace {

class EditorWindowTest : public ShellTest {
protected:
    EditorWindowTest() {
        actions = std::make_unique<CommandActions>(CommandContext{*store, *coordinator});
        window = std::make_unique<EditorWindow>(*store, *coordinator, *actions);
        window->resize(1180, 820);
        window->show();
    }
    ~EditorWindowTest() override {
        window.reset();
        actions.reset();
    }

    QList<ProjectTab*> tabs() const {
        runDeferred();
        return window->findChildren<ProjectTab*>();
    }
    QString text(const char* name) const {
        return window->findChild<QLabel*>(QLatin1StringView(name))->text();
    }
    /// The checkable ones, without the panel's own.
    QList<QAbstractButton*> toolButtons() const {
        auto buttons = window->findChild<ToolsPalette*>()->findChildren<QAbstractButton*>();
        buttons.removeIf([](const QAbstractButton* button) { return !button->isCheckable(); });
        return buttons;
    }
    /// An outline around a part of the canvas, as the rectangle tool leaves it.
    void selectPixels() const {
        store->editActiveProject([](model::PaintProject& project) {
            project.isCanvasSelected = true;
            project.pixelSelection =
                model::PixelSelection{.x = 1, .y = 1, .width = 3, .height = 2, .maskPNGData = {}};
        });
    }
    QAbstractButton* tool(const char* rawText) const {
        return window->findChild<ToolsPalette*>()->findChild<QAbstractButton*>(
            QLatin1StringView(rawText));
    }

    std::unique_ptr<CommandActions> actions;
    std::unique_ptr<EditorWindow> window;
};

TEST_F(EditorWindowTest, HasATabForEachProject) {
    EXPECT_TRUE(tabs().isEmpty());
    makeProject(*store);
    makeProject(*store);
    ASSERT_EQ(tabs().size(), 2);
    EXPECT_EQ(tabs().first()->text(), QStringLiteral("Untitled"));
    store->closeProject(*store->activeProjectID());
    EXPECT_EQ(tabs().size(), 1);
}

TEST_F(EditorWindowTest, SelectsTheTabThatIsPressed) {
    const QUuid first = makeProject(*store);
    makeProject(*store);
    tabs().first()->click();
    EXPECT_EQ(store->activeProjectID(), first);
}

TEST_F(EditorWindowTest, MarksUnsavedTabs) {
    makeProject(*store);
    EXPECT_EQ(tabs().first()->accessibleDescription(), QString());
    edit(*store);
    EXPECT_EQ(tabs().first()->accessibleDescription(), QStringLiteral("Unsaved"));
    saveTo(*store, QStringLiteral("cat.quillabrae"));
    EXPECT_EQ(tabs().first()->accessibleDescription(), QString());
    EXPECT_EQ(tabs().first()->text(), QStringLiteral("cat"));
}

TEST_F(EditorWindowTest, AsksBeforeATabWithUnsavedWorkCloses) {
    makeProject(*store);
    edit(*store);
    tabs().first()->findChild<QAbstractButton*>(QStringLiteral("closeTab"))->click();
    runDeferred();
    EXPECT_EQ(panels.shown, QStringList(QStringLiteral("save Untitled")));
    EXPECT_EQ(tabs().size(), 1);
}

TEST_F(EditorWindowTest, HasAButtonForEachToolOfThePaletteAndNoOther) {
    const auto buttons = toolButtons();
    ASSERT_EQ(buttons.size(), 19);
    for (std::size_t index = 0; index < paletteTools.size(); ++index) {
        const QAbstractButton* button = buttons.at(static_cast<qsizetype>(index));
        EXPECT_EQ(button->accessibleName(), model::title(paletteTools.at(index)));
        EXPECT_EQ(button->size(), QSize(28, 28));
    }
}

TEST_F(EditorWindowTest, SelectsToolsBothWays) {
    tool("eraser")->click();
    EXPECT_EQ(store->settings().selectedTool, model::PaintTool::eraser);
    store->editSettings([](auto& settings) { settings.selectedTool = model::PaintTool::pencil; });
    EXPECT_TRUE(tool("pencil")->isChecked());
    EXPECT_FALSE(tool("eraser")->isChecked());
    store->editSettings([](auto& settings) { settings.selectedTool = model::PaintTool::ellipse; });
    EXPECT_FALSE(tool("pencil")->isChecked());
}

TEST_F(EditorWindowTest, SwapsTheColorsAndBack) {
    auto* stack = window->findChild<ColorStack*>();
    const auto before = store->settings();
    stack->swapColors();
    EXPECT_EQ(store->settings().primaryColor, before.secondaryColor);
    EXPECT_EQ(store->settings().secondaryColor, before.primaryColor);
    stack->swapColors();
    EXPECT_EQ(store->settings().primaryColor, before.primaryColor);
}

TEST_F(EditorWindowTest, TellsTheStatusAndThePointersPlace) {
    EXPECT_EQ(text("statusMessage"), QStringLiteral("Ready"));
    EXPECT_EQ(text("cursorPosition"), QString());
    makeProject(*store);
    store->setStatusMessage(QStringLiteral("Hello"));
    store->setCanvasCursorPosition(QPointF(12.7, -0.5));
    EXPECT_EQ(text("statusMessage"), QStringLiteral("Hello"));
    EXPECT_EQ(text("cursorPosition"), QStringLiteral("12 x -1"));
    store->setCanvasCursorPosition(std::nullopt);
    EXPECT_EQ(text("cursorPosition"), QString());
}

TEST_F(EditorWindowTest, TellsTheZoom) {
    EXPECT_EQ(text("zoom"), QStringLiteral("100 %"));
    store->editSettings([](auto& settings) { settings.zoomScale = 64.0; });
    EXPECT_EQ(text("zoom"), QStringLiteral("6400 %"));
    store->editSettings([](auto& settings) { settings.zoomScale = 0.125; });
    EXPECT_EQ(text("zoom"), QStringLiteral("12.5 %"));
}

TEST_F(EditorWindowTest, OffersAProjectWhereNoneIsOpen) {
    const auto* empty = window->findChild<EmptyWorkspace*>();
    EXPECT_TRUE(empty->isVisible());
    EXPECT_FALSE(window->findChild<ToolsPalette*>()->isVisible());
    makeProject(*store);
    EXPECT_FALSE(empty->isVisible());
    EXPECT_TRUE(window->findChild<ToolsPalette*>()->isVisible());
    store->closeAllProjects();
    EXPECT_TRUE(empty->isVisible());
}

TEST_F(EditorWindowTest, KeepsItsPanelsInsideAtEverySize) {
    makeProject(*store);
    auto* workspace = window->findChild<Workspace*>();
    const auto panels = window->findChildren<FloatingPanel*>();
    ASSERT_EQ(panels.size(), 4);
    for (const QSize size : {QSize(1100, 760), QSize(1600, 1200), QSize(1100, 760)}) {
        window->resize(size);
        runDeferred();
        for (const FloatingPanel* panel : panels) {
            EXPECT_TRUE(workspace->rect().contains(panel->geometry()))
                << qPrintable(panel->accessibleName());
            for (const FloatingPanel* other : panels) {
                const bool isOver = other->geometry().intersects(panel->geometry());
                EXPECT_EQ(isOver, other == panel);
            }
        }
    }
}

TEST_F(EditorWindowTest, FitsItsLeastSize) {
    makeProject(*store);
    for (const model::PaintTool tool : model::allPaintTools()) {
        store->editSettings([tool](auto& settings) { settings.selectedTool = tool; });
        runDeferred();
        EXPECT_LE(window->minimumSizeHint().width(), 1100) << qPrintable(model::title(tool));
        EXPECT_LE(window->minimumSizeHint().height(), 760);
    }
}

TEST_F(EditorWindowTest, MovesAPanelAndKeepsItThereWhenTheWindowGrows) {
    makeProject(*store);
    auto* tools = window->findChild<ToolsPalette*>();
    Q_EMIT tools->moveRequested({5000, 5000});
    const QPoint fromEdge =
        QPoint(tools->parentWidget()->width(), tools->parentWidget()->height()) -
        tools->geometry().bottomRight();
    EXPECT_TRUE(tools->parentWidget()->rect().contains(tools->geometry()));
    window->resize(1500, 1000);
    runDeferred();
    EXPECT_EQ(QPoint(tools->parentWidget()->width(), tools->parentWidget()->height()) -
                  tools->geometry().bottomRight(),
              fromEdge);
}

// Keys

TEST_F(EditorWindowTest, MovesTheCaretAndNotTheSelectionWhileANameIsTyped) {
    makeProject(*store);
    store->selectAllCanvas();
    window->activateWindow();
    auto* list = window->findChild<LayerList*>();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_F2);
    auto* editor = list->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->setText(QStringLiteral("Sky"));
    const auto before = *store->activeProject();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Left, Qt::Key_Up, Qt::Key_Down})
        QTest::keyClick(editor, key);
    EXPECT_EQ(editor->cursorPosition(), 1);
    EXPECT_EQ(*store->activeProject(), before);
}

TEST_F(EditorWindowTest, NudgesTheSelectionWhereAnArrowKeyHasNoOtherUse) {
    makeProject(*store);
    selectPixels();
    window->activateWindow();
    QTest::keyClick(window.get(), Qt::Key_Right);
    EXPECT_EQ(store->activeProject()->pixelSelection->x, 2.0);
    QTest::keyClick(window->findChild<FloatingPanel*>(), Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(store->activeProject()->pixelSelection->y, 21.0);
}

TEST_F(EditorWindowTest, DropsTheSelectionOnEscapeAloneAndNotWithAModifier) {
    makeProject(*store);
    store->selectAllCanvas();
    ASSERT_TRUE(store->canDropSelection());
    window->activateWindow();
    runDeferred();
    QTest::keyClick(window.get(), Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_TRUE(store->canDropSelection());
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(store->canDropSelection());
}

TEST_F(EditorWindowTest, CommitsAShapeOnEscapeAndLeavesTheSelectionToTheNext) {
    store->createUntitledProject(400, 300, 96);
    store->editSettings([](auto& settings) { settings.selectedTool = model::PaintTool::shapes; });
    window->activateWindow();
    runDeferred();
    auto* canvas = window->findChild<canvas::CanvasWidget*>();
    const QPoint at = (canvas->canvasOriginInViewport() + QPointF(150, 100)).toPoint();
    QTest::mousePress(canvas->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseMove(canvas->viewport(), at + QPoint(60, 40));
    QTest::mouseRelease(canvas->viewport(), Qt::LeftButton, {}, at + QPoint(60, 40));
    ASSERT_TRUE(canvas->view().drafts().hasShape());
    store->editActiveProject([](model::PaintProject& project) { project.isCanvasSelected = true; });
    ASSERT_TRUE(store->canDropSelection());
    // Wherever the keyboard is.
    window->findChild<HistoryList*>()->setFocus();
    QTest::keyClick(window->findChild<HistoryList*>(), Qt::Key_Escape);
    EXPECT_FALSE(canvas->view().drafts().hasShape());
    EXPECT_TRUE(store->canDropSelection());
    runDeferred();
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(store->canDropSelection());
}

TEST_F(EditorWindowTest, TakesADropAndPastesItsPicture) {
    makeProject(*store);
    QMimeData drag;
    drag.setUrls({writePicture(QStringLiteral("red.png"))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &drag, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &drag, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &drop);
    EXPECT_FALSE(store->activeProject()->floatingSelection);
    runDeferred();
    EXPECT_TRUE(store->activeProject()->floatingSelection);
}

TEST_F(EditorWindowTest, TurnsAwayADragThatHoldsNothingForIt) {
    QMimeData drag;
    drag.setData(QStringLiteral("application/zip"), "x");
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &drag, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST(ColorConversion, KeepsWholeEightBitColors) {
    for (int value = 0; value < 256; ++value) {
        const QColor color(value, 255 - value, value / 2, value);
        EXPECT_EQ(toQColor(toColorValue(color)).rgba(), color.rgba());
    }
}

} // namespace
} // namespace quillabrae::shell
