// SPDX-License-Identifier: GPL-3.0-or-later
// Writing on the canvas with the desktop's keys, clipboard and input methods.
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "canvas/DraftHandles.h"
#include "canvas/DraftOverlay.h"
#include "store/StoreTest.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QTest>

#include <memory>

namespace quillabrae::canvas {
namespace {

using model::PaintTool;

class WritingTest : public store::StoreTest {
protected:
    void SetUp() override {
        projects->editSettings([](model::PaintAppSettings& settings) {
            settings.selectedTool = PaintTool::text;
            settings.primaryColor = {1.0, 0.0, 0.0, 1.0};
            settings.textFontFamily = QStringLiteral("DejaVu Sans Mono");
            settings.textFontSize = 20.0;
        });
        projects->createUntitledProject(200, 100, 96);
        widget.resize(900, 700);
        widget.show();
        QApplication::processEvents();
        projects->editSettings([](auto& settings) { settings.zoomScale = 2.0; });
        widget.view().zoom().centerCanvasInViewport();
        QApplication::processEvents();
        click(20, 10);
    }

    QPoint at(double x, double y) {
        return (widget.canvasOriginInViewport() + QPointF(x, y) * 2.0).toPoint();
    }
    void click(double x, double y) {
        QTest::mouseClick(widget.viewport(), Qt::LeftButton, Qt::NoModifier, at(x, y));
    }
    void keys(const char* text) {
        for (const char c : QByteArray(text)) QTest::keyClick(&widget, c);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&widget, key, modifiers);
    }
    QString text() { return widget.view().textDraft().activeTextDraft()->text; }
    QColor onScreen(QPointF place) {
        const QImage image = widget.viewport()->grab().toImage();
        return image.pixelColor((place * image.devicePixelRatio()).toPoint());
    }

    std::unique_ptr<store::ProjectStore> projects = makeStore();
    CanvasWidget widget{*projects};
};

TEST_F(WritingTest, KeysWriteIntoTheBox) {
    keys("one two");
    EXPECT_EQ(text(), QStringLiteral("one two"));
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    keys("x");
    EXPECT_EQ(text(), QStringLiteral("one two\n\tx"));
    key(Qt::Key_Backspace);
    key(Qt::Key_Home);
    key(Qt::Key_Delete);
    EXPECT_EQ(text(), QStringLiteral("one two\n"));
}

TEST_F(WritingTest, TheDesktopsKeysEditTheTextAndNotThePicture) {
    keys("one two");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), QString());
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(text(), QStringLiteral("one two"));
    key(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("one "));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("two"));
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text(), QStringLiteral("two"));
}

TEST_F(WritingTest, ShortcutsThatAreKeysOfTheTextAreHeldBack) {
    const auto isHeldBack = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
        event.ignore();
        QApplication::sendEvent(&widget, &event);
        return event.isAccepted();
    };
    EXPECT_TRUE(isHeldBack(Qt::Key_Z, Qt::ControlModifier));
    EXPECT_TRUE(isHeldBack(Qt::Key_Escape, Qt::NoModifier));
    EXPECT_FALSE(isHeldBack(Qt::Key_S, Qt::ControlModifier));
    key(Qt::Key_Escape);
    EXPECT_FALSE(isHeldBack(Qt::Key_Z, Qt::ControlModifier));
    EXPECT_FALSE(isHeldBack(Qt::Key_Escape, Qt::NoModifier));
}

TEST_F(WritingTest, EscapeEndsTheTextAsPixels) {
    keys("text");
    key(Qt::Key_Escape);
    EXPECT_FALSE(widget.view().textDraft().activeTextDraft().has_value());
    EXPECT_EQ(projects->history(*projects->activeProjectID()).entries.back().title,
              QStringLiteral("Text"));
}

TEST_F(WritingTest, HidingTheCanvasEndsTheTextAsPixels) {
    keys("text");
    widget.hide();
    EXPECT_FALSE(widget.view().textDraft().activeTextDraft().has_value());
    EXPECT_EQ(projects->history(*projects->activeProjectID()).entries.size(), 2);
}

TEST_F(WritingTest, ADoubleClickTakesAWord) {
    keys("one two");
    const QRectF caret = widget.view().textDraft().layout().caretRect(5);
    const QPoint place = at(20 + caret.center().x(), 10 + caret.center().y());
    QTest::mouseClick(widget.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(widget.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    EXPECT_EQ(widget.view().textDraft().editing().selectedText(), QStringLiteral("two"));
}

TEST_F(WritingTest, AnInputMethodComposesAtTheCaret) {
    EXPECT_TRUE(widget.inputMethodQuery(Qt::ImEnabled).toBool());
    keys("ab");
    key(Qt::Key_Left);
    QInputMethodEvent composing(QStringLiteral("ni"), {});
    QApplication::sendEvent(&widget, &composing);
    EXPECT_EQ(text(), QStringLiteral("ab"));
    EXPECT_EQ(widget.view().textDraft().layout().text(), QStringLiteral("anib"));
    QInputMethodEvent composed;
    composed.setCommitString(QString::fromUtf8("你"));
    QApplication::sendEvent(&widget, &composed);
    EXPECT_EQ(text(), QString::fromUtf8("a你b"));
    EXPECT_EQ(widget.inputMethodQuery(Qt::ImCursorPosition).toInt(), 2);
    key(Qt::Key_Escape);
    EXPECT_FALSE(widget.inputMethodQuery(Qt::ImEnabled).toBool());
}

TEST_F(WritingTest, TheCaretStandsOnTheScreenWhereTheLinesSay) {
    keys("abc");
    const QRectF shown = draftCaretRect(widget.view(), widget.canvasOriginInViewport());
    const QRectF caret = widget.view().textDraft().layout().caretRect(3);
    EXPECT_NEAR(shown.center().x(), widget.canvasOriginInViewport().x() + (20 + caret.x()) * 2.0,
                1.0);
    EXPECT_EQ(onScreen(shown.center()), QColor(Qt::red));
}

TEST_F(WritingTest, WhatIsComposedShowsOnTheScreen) {
    EXPECT_NE(onScreen(at(30, 20)), QColor(Qt::red));
    QInputMethodEvent composing(QString::fromUtf8("\u2588\u2588"), {});
    QApplication::sendEvent(&widget, &composing);
    EXPECT_EQ(onScreen(at(30, 20)), QColor(Qt::red));
    EXPECT_EQ(text(), QString());
    QInputMethodEvent given;
    QApplication::sendEvent(&widget, &given);
    EXPECT_NE(onScreen(at(30, 20)), QColor(Qt::red));
}

TEST_F(WritingTest, CaretAndGlyphsAgreeWithinACanvasPixelAtAnyZoom) {
    widget.view().textDraft().edit([](TextEditing& editing, const raster::TextLayout&) {
        editing.insert(QString::fromUtf8("\u2588\u2588\u2588"));
    });
    for (const double zoom : {0.5, 1.0, 1.7, 3.3, 8.0, 32.0}) {
        projects->editSettings([=](auto& settings) { settings.zoomScale = zoom; });
        QApplication::processEvents();
        const QImage glyphs = widget.view().textDraft().preview().toQImage();
        int inkEnd = 0;
        for (int x = 0; x < glyphs.width(); ++x)
            if (qAlpha(glyphs.pixel(x, 12)) > 127) inkEnd = x + 1;
        ASSERT_GT(inkEnd, 20);
        const QRectF caret = draftCaretRect(widget.view(), widget.canvasOriginInViewport());
        const double shown = (caret.center().x() - widget.canvasOriginInViewport().x()) / zoom;
        EXPECT_NEAR(shown, 20.0 + inkEnd, 1.0) << zoom;
    }
}

TEST_F(WritingTest, TheTextShowsOnTheScreenAsACommitWillLeaveIt) {
    widget.view().textDraft().edit([](TextEditing& editing, const raster::TextLayout&) {
        editing.insert(QString::fromUtf8("\u2588\u2588"));
    });
    EXPECT_EQ(onScreen(at(30, 20)), QColor(Qt::red));
    key(Qt::Key_Escape);
    EXPECT_EQ(onScreen(at(30, 20)), QColor(Qt::red));
}

} // namespace
} // namespace quillabrae::canvas
