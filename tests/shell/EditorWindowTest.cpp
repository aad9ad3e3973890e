// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/LabeledSlider.h"
#include "shell/editor/ColorStack.h"
#include "shell/editor/EditorWindow.h"
#include "shell/editor/ProjectTab.h"
#include "shell/editor/ToolOptions.h"
#include "shell/editor/ToolsPalette.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QSlider>

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

TEST_F(EditorWindowTest, ShowsTheOptionsThatTheToolHeeds) {
    const auto sliders = window->findChild<ToolOptions*>()->findChildren<LabeledSlider*>();
    ASSERT_EQ(sliders.size(), 2);
    tool("brush")->click();
    EXPECT_TRUE(sliders.first()->isVisible());
    EXPECT_FALSE(sliders.last()->isVisible());
    tool("pencil")->click();
    EXPECT_TRUE(sliders.last()->isVisible());
    tool("hand")->click();
    EXPECT_FALSE(sliders.first()->isVisible());
    tool("shapes")->click();
    EXPECT_FALSE(sliders.first()->isVisible());
}

TEST_F(EditorWindowTest, WritesSlidersToTheSettingsAndBack) {
    QSlider* size = window->findChild<ToolOptions*>()
                        ->findChildren<LabeledSlider*>()
                        .first()
                        ->findChild<QSlider*>();
    EXPECT_EQ(size->minimum(), 1);
    EXPECT_EQ(size->maximum(), 512);
    size->setValue(40);
    EXPECT_EQ(store->settings().brushSize, 40);
    store->editSettings([](auto& settings) { settings.brushSize = 7.6; });
    EXPECT_EQ(size->value(), 8);
    EXPECT_EQ(store->settings().brushSize, 7.6);
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
