// SPDX-License-Identifier: GPL-3.0-or-later
// Every window and dialog on a screen that is smaller than it wants to be, with large letters and
// with longer words: nothing reaches beyond the screen, and all of it can be got at.
#include "shell/ClippedTexts.h"
#include "shell/EveryDialog.h"
#include "shell/EveryWindow.h"
#include "shell/WhenShown.h"
#include "shell/controls/BodyScroller.h"
#include "shell/controls/SidewaysScroller.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/PackageFileDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/editor/Workspace.h"
#include "shell/looks/SystemFontSize.h"
#include "shell/panels/ColorPanel.h"
#include "shell/panels/HistoryPanel.h"
#include "shell/panels/LayersPanel.h"
#include "shell/settings/PaintSettingsView.h"
#include "support/PseudoLanguages.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

struct Reader {
    const char* name = "";
    QString language;
    double letters = 1.0;
};

class SmallScreenTest : public EveryWindow, public testing::WithParamInterface<Reader> {
protected:
    SmallScreenTest() : EveryWindow(GetParam().language) {
        letters.use(GetParam().letters);
        host.setScreen(screen);
        host.setGeometry(screen->availableGeometry());
        host.show();
    }
    ~SmallScreenTest() override { letters.use(1.0); }

    std::unique_ptr<QWidget> makeSmallWindow(WindowRole role) {
        auto window = makeWindow(role);
        window->setScreen(screen);
        window->move(screen->availableGeometry().topLeft());
        window->show();
        runDeferred();
        window->resize(window->minimumSize());
        return window;
    }

    void expectReachable(QWidget& window, const QString& name) const {
        // Where windows are put is the desktop's to say.
        if (!window.isVisible()) window.move(screen->availableGeometry().topLeft());
        window.show();
        runDeferred();
        SCOPED_TRACE(name.toStdString());
        EXPECT_EQ(window.screen(), screen);
        const QRect frame = window.frameGeometry();
        EXPECT_TRUE(screen->availableGeometry().contains(frame))
            << frame.x() << ' ' << frame.y() << ' ' << frame.width() << ' ' << frame.height();
        EXPECT_EQ(clippedTexts(window).join(u'\n').toStdString(), "");
        for (const QScrollArea* area : window.findChildren<QScrollArea*>()) {
            if (!area->isVisible()) continue;
            EXPECT_TRUE(showsAll(*area))
                << area->widget()->width() << " in " << area->viewport()->width();
        }
    }
    /// From side to side, where it is not scrolled by the wheel.
    static bool showsAll(const QScrollArea& area) {
        if (area.horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff) return true;
        if (qobject_cast<const SidewaysScroller*>(&area) != nullptr) return true;
        // The bar of a body may lie over a margin.
        const bool isBody = qobject_cast<const BodyScroller*>(&area) != nullptr;
        const QMargins margins = isBody ? area.widget()->layout()->contentsMargins() : QMargins();
        const int margin =
            area.layoutDirection() == Qt::RightToLeft ? margins.left() : margins.right();
        return area.widget()->width() - margin <= area.viewport()->width();
    }
    void expectReachable(const Alert& alert) {
        const WhenShown shown([this, &alert](QDialog& dialog) {
            expectReachable(dialog, alert.message);
            EXPECT_EQ(dialog.findChildren<QPushButton*>().size(), alert.buttons.size());
            dialog.close();
        });
        runAlert(alert, &host);
    }

    static void expectColorsStay(const QWidget& window) {
        auto* tools = window.findChild<ToolsPalette*>();
        auto* colors = window.findChild<ColorPanel*>();
        const QRect before = colors->geometry();
        for (const QPoint place : {tools->pos() + QPoint(5, 5), colors->pos()}) {
            Q_EMIT tools->moveRequested(place);
            Q_EMIT tools->sizeChanged();
            EXPECT_EQ(colors->geometry(), before);
        }
    }

    QScreen* screen = QGuiApplication::screens().at(1);
    SystemFontSize letters;
    /// What dialogs belong to.
    QWidget host;
};

TEST_P(SmallScreenTest, TheEditorFitsWithEveryToolsOptions) {
    const auto window = makeSmallWindow(WindowRole::editor);
    for (const model::PaintTool tool : model::allPaintTools()) {
        store->editSettings([tool](auto& settings) { settings.selectedTool = tool; });
        expectReachable(*window, model::title(tool));
    }
}

TEST_P(SmallScreenTest, NoPanelHidesToolsOrReachesBeyondTheRoom) {
    const auto window = makeSmallWindow(WindowRole::editor);
    expectReachable(*window, QStringLiteral("editor"));
    const auto* workspace = window->findChild<Workspace*>();
    const auto* tools = window->findChild<ToolsPalette*>();
    const auto* colors = window->findChild<ColorPanel*>();
    EXPECT_FALSE(tools->geometry().intersects(colors->geometry()));
    for (const FloatingPanel* panel : window->findChildren<FloatingPanel*>())
        EXPECT_TRUE(workspace->rect().contains(panel->geometry()))
            << qPrintable(panel->accessibleName());
    const auto* layers = window->findChild<LayersPanel*>();
    const auto* history = window->findChild<HistoryPanel*>();
    EXPECT_FALSE(layers->geometry().intersects(history->geometry()));
}

TEST_P(SmallScreenTest, ColorsStayWhereTheyAreWhenToolsAreMoved) {
    const auto window = makeSmallWindow(WindowRole::editor);
    runDeferred();
    expectColorsStay(*window);
    // There is room for them at their home.
    const auto large = makeWindow(WindowRole::editor);
    large->resize(1800, 1800);
    large->show();
    runDeferred();
    expectColorsStay(*large);
}

TEST_P(SmallScreenTest, TheOtherWindowsFit) {
    saveTo(*store, QStringLiteral("boat.quillabrae"));
    expectReachable(*makeSmallWindow(WindowRole::welcome), QStringLiteral("welcome"));
    expectReachable(*makeSmallWindow(WindowRole::pluginLibrary), QStringLiteral("library"));
    const auto tour = makeSmallWindow(WindowRole::paintNetQuickStart);
    auto* steps = tour->findChild<QListWidget*>();
    for (int step = 0; step < steps->count(); ++step) {
        steps->setCurrentRow(step);
        expectReachable(*tour, steps->item(step)->text());
    }
    const auto settings = makeSmallWindow(WindowRole::settings);
    for (const auto section : allPaintSettingsSections()) {
        dynamic_cast<PaintSettingsView&>(*settings).showSection(section);
        expectReachable(*settings, title(section));
    }
}

TEST_P(SmallScreenTest, TheDialogsFit) {
    visitDialogs(*store, &host,
                 [this](QWidget& dialog, const QString& name) { expectReachable(dialog, name); });
    PackageFileDialog file(QStringLiteral("Open"), folder.path(), QFileDialog::AcceptOpen, &host);
    expectReachable(file, QStringLiteral("open"));
}

TEST_P(SmallScreenTest, TheAlertsFit) {
    for (const Alert& alert : everyAlert()) expectReachable(alert);
}

TEST_P(SmallScreenTest, TheButtonsOfATallDialogStayWhileItsBodyScrolls) {
    ResizeDialog resize({.mode = ResizeDialogMode::canvas,
                         .canvasSize = {900, 620},
                         .resolutionDPI = 96,
                         .anchor = model::CanvasAnchor::center},
                        &host);
    expectReachable(resize, QStringLiteral("resize"));
    const auto* body = resize.findChild<BodyScroller*>();
    EXPECT_GT(body->verticalScrollBar()->maximum(), 0);
    const auto* accept = resize.findChild<QPushButton*>(QStringLiteral("accept"));
    EXPECT_FALSE(body->isAncestorOf(accept));
    EXPECT_TRUE(resize.rect().contains(accept->geometry()));
}

/// A window whose contents need as much as is set.
class WindowsAndScreens : public testing::Test {
protected:
    void fitAt(QPoint place, QSize contents) {
        content->setMinimumSize(contents);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(content);
        TextSize::limitSize(window, {200, 200});
        window.resize(contents);
        window.move(place);
        window.show();
        QCoreApplication::processEvents();
    }
    void need(QSize contents) {
        content->setMinimumSize(contents);
        QCoreApplication::processEvents();
    }

    /// What the system may take the frame for more or less than once.
    static constexpr int frameWidth = 10;
    QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget window;
    QVBoxLayout* layout = new QVBoxLayout(&window);
    QLabel* content = new QLabel;
};

TEST_F(WindowsAndScreens, AWindowThatGrowsBeyondTheScreenIsMovedBack) {
    fitAt(room.bottomRight() - QPoint(320, 320), {300, 300});
    need({500, 500});
    EXPECT_EQ(window.size(), QSize(500, 500));
    EXPECT_TRUE(room.contains(window.frameGeometry()));
}

TEST_F(WindowsAndScreens, AWindowThatTheUserPushedAsideStaysThere) {
    fitAt(room.topLeft() - QPoint(150, 0), {300, 300});
    const QPoint place = window.pos();
    // Its least size changes, and it is larger than that.
    window.resize(600, 600);
    need({400, 400});
    EXPECT_NEAR(window.x(), place.x(), frameWidth);
    // It becomes higher, which is no reason to move it sideways.
    need({400, 700});
    EXPECT_EQ(window.size(), QSize(600, 700));
    EXPECT_NEAR(window.x(), place.x(), frameWidth);
}

TEST_F(WindowsAndScreens, AMaximizedWindowStaysWhereItIs) {
    fitAt(room.topLeft(), {300, 300});
    window.showMaximized();
    QCoreApplication::processEvents();
    window.setGeometry(room.translated(40, 40));
    need(room.size() + QSize(10, 10));
    EXPECT_NEAR(window.x(), room.left() + 40, frameWidth);
}

TEST(Screens, AWindowThatComesToASmallScreenIsCutToItAndGrowsAgain) {
    const auto screens = QGuiApplication::screens();
    QWidget window;
    auto* tall = new ScrolledBody;
    auto* column = new QVBoxLayout(tall);
    auto* content = new QLabel(tall);
    content->setMinimumSize(700, 900);
    column->addWidget(content);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(new BodyScroller(tall, &window));
    TextSize::fixSize(window, {});
    window.show();
    EXPECT_GE(window.height(), 900);
    for (const int number : {1, 0}) {
        window.setScreen(screens.at(number));
        window.move(screens.at(number)->availableGeometry().topLeft());
        QCoreApplication::processEvents();
        EXPECT_EQ(window.height() < 600, number == 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Readers, SmallScreenTest,
                         testing::Values(Reader{"Usual", QStringLiteral("en"), 1.0},
                                         Reader{"LargeLetters", QStringLiteral("en"), 2.0},
                                         Reader{"LongWords", longLanguage(), 1.0},
                                         Reader{"LargeLettersAndLongWords", longLanguage(), 2.0},
                                         Reader{"RightToLeft", rightToLeftLanguage(), 1.5}),
                         [](const auto& reader) { return std::string(reader.param.name); });

} // namespace
} // namespace quillabrae::shell
