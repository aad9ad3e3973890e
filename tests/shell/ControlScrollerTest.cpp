// SPDX-License-Identifier: GPL-3.0-or-later
// What scrolls controls: the wheel turns it rather than them, and the keyboard never goes out of
// sight.
#include "shell/controls/BodyScroller.h"
#include "shell/controls/NumberField.h"
#include "shell/controls/SidewaysScroller.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

/// Turns the wheel away from the user over the middle of a part, as the window system tells it.
void turnWheelOver(QWidget& part) {
    constexpr int notch = 120;
    const QPointF place = part.rect().center();
    QWheelEvent event(place, part.mapToGlobal(place), {}, {0, -notch}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    // Other than sending it, this leaves it the mark of the window system.
    qApp->notify(&part, &event);
}

/// One of each kind that the wheel turns, at a value from which it goes down.
struct Controls {
    explicit Controls(QBoxLayout& layout) {
        spin->setValue(50);
        menu->addItems({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")});
        slider->setValue(50);
        tabs->addTab(QStringLiteral("one"));
        tabs->addTab(QStringLiteral("two"));
        for (QWidget* control : all()) layout.addWidget(control);
    }

    QList<QWidget*> all() const { return {spin, menu, slider, tabs}; }
    QList<int> values() const {
        return {spin->value(), menu->currentIndex(), slider->value(), tabs->currentIndex()};
    }

    QSpinBox* spin = new QSpinBox;
    QComboBox* menu = new QComboBox;
    QSlider* slider = new QSlider(Qt::Horizontal);
    QTabBar* tabs = new QTabBar;
};

/// A dialog with a body and a button under it.
class BodyScrollerTest : public testing::Test {
protected:
    BodyScrollerTest() {
        // As small as it is made, like a window that is cut to its screen.
        layout->setSizeConstraint(QLayout::SetNoConstraint);
        layout->addWidget(scroller, 1);
        layout->addWidget(button);
    }

    void show(int height) {
        dialog.resize(300, height);
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        QCoreApplication::processEvents();
    }
    /// Some lines of text, which are higher together than the dialogs here.
    void addTexts() {
        for (int line = 0; line < 20; ++line) column->addWidget(new QLabel(QStringLiteral("text")));
    }
    bool isInSight(const QWidget& part) const {
        const QWidget& view = *scroller->viewport();
        return view.rect().contains(QRect(part.mapTo(&view, QPoint()), part.size()));
    }
    QScrollBar& bar() const { return *scroller->verticalScrollBar(); }

    QDialog dialog;
    QVBoxLayout* layout = new QVBoxLayout(&dialog);
    ScrolledBody* body = new ScrolledBody;
    QVBoxLayout* column = new QVBoxLayout(body);
    BodyScroller* scroller = new BodyScroller(body, &dialog);
    QPushButton* button = new QPushButton(QStringLiteral("Done"), &dialog);
};

TEST_F(BodyScrollerTest, TheWheelScrollsWhateverControlItIsOver) {
    const Controls controls(*column);
    addTexts();
    show(200);
    button->setFocus();
    ASSERT_TRUE(scroller->hasMore());
    const auto before = controls.values();
    for (QWidget* control : controls.all()) {
        bar().setValue(0);
        turnWheelOver(*control);
        EXPECT_GT(bar().value(), 0) << control->metaObject()->className();
        EXPECT_EQ(QApplication::focusWidget(), button);
    }
    // At the end nothing is left to scroll, which is no reason to change a value.
    bar().setValue(bar().maximum());
    for (QWidget* control : controls.all()) turnWheelOver(*control);
    EXPECT_EQ(controls.values(), before);
}

TEST_F(BodyScrollerTest, TheWheelTurnsAControlThatHasTheKeyboard) {
    const Controls controls(*column);
    addTexts();
    show(200);
    controls.spin->setFocus();
    turnWheelOver(*controls.spin);
    EXPECT_EQ(controls.spin->value(), 49);
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(BodyScrollerTest, TheWheelTurnsControlsWhereNothingIsToBeScrolled) {
    const Controls controls(*column);
    show(600);
    button->setFocus();
    ASSERT_FALSE(scroller->hasMore());
    for (QWidget* control : controls.all()) turnWheelOver(*control);
    EXPECT_EQ(controls.values(), (QList<int>{49, 1, 47, 1}));
}

TEST_F(BodyScrollerTest, ControlsThatComeLaterAreNoExceptionAtAnyDepth) {
    addTexts();
    show(200);
    auto* group = new QWidget;
    auto* rows = new QVBoxLayout(group);
    const Controls controls(*rows);
    column->insertWidget(0, group);
    QCoreApplication::processEvents();
    const auto before = controls.values();
    for (QWidget* control : controls.all()) turnWheelOver(*control);
    EXPECT_EQ(controls.values(), before);
    EXPECT_GT(bar().value(), 0);
}

TEST_F(BodyScrollerTest, TheKeyboardThatComesFromOutsideIsInSight) {
    auto* first = new QPushButton(QStringLiteral("First"));
    auto* last = new QPushButton(QStringLiteral("Last"));
    column->addWidget(first);
    addTexts();
    column->addWidget(last);
    show(200);
    button->setFocus();
    bar().setValue(bar().maximum());
    ASSERT_FALSE(isInSight(*first));
    QTest::keyClick(&dialog, Qt::Key_Tab);
    EXPECT_EQ(dialog.focusWidget(), first);
    EXPECT_TRUE(isInSight(*first));
    QTest::keyClick(&dialog, Qt::Key_Tab, Qt::ShiftModifier);
    QTest::keyClick(&dialog, Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(dialog.focusWidget(), last);
    EXPECT_TRUE(isInSight(*last));
}

TEST_F(BodyScrollerTest, WhatIsClickedStaysUnderThePointer) {
    auto* half = new QPushButton(QStringLiteral("Half"));
    column->addWidget(half);
    addTexts();
    show(200);
    button->setFocus();
    bar().setValue(half->geometry().center().y());
    const int before = bar().value();
    QTest::mouseClick(half, Qt::LeftButton, {}, QPoint(10, half->height() - 2));
    EXPECT_EQ(dialog.focusWidget(), half);
    EXPECT_EQ(bar().value(), before);
}

TEST_F(BodyScrollerTest, NothingMovesAsideForTheKeyboard) {
    auto* wide = new QPushButton(QStringLiteral("Wide"));
    wide->setMinimumWidth(300);
    addTexts();
    column->addWidget(wide);
    column->setContentsMargins(24, 24, 24, 24);
    dialog.setLayoutDirection(Qt::RightToLeft);
    show(200);
    dialog.resize(scroller->minimumSizeHint().width() + 20, 200);
    QCoreApplication::processEvents();
    button->setFocus();
    QTest::keyClick(&dialog, Qt::Key_Tab);
    EXPECT_TRUE(isInSight(*wide));
    EXPECT_EQ(scroller->horizontalScrollBar()->value(), 0);
}

TEST_F(BodyScrollerTest, TextsAloneAreScrolledByTheKeyboard) {
    addTexts();
    show(200);
    button->setFocus();
    QTest::keyClick(&dialog, Qt::Key_Tab);
    EXPECT_EQ(dialog.focusWidget(), scroller);
    const QImage marked = scroller->grab().toImage();
    QTest::keyClick(scroller, Qt::Key_PageDown);
    EXPECT_GT(bar().value(), 0);
    bar().setValue(0);
    QTest::keyClick(&dialog, Qt::Key_Tab);
    EXPECT_EQ(dialog.focusWidget(), button);
    EXPECT_NE(scroller->grab().toImage(), marked);
    // There is room for all of it.
    dialog.resize(300, 900);
    QCoreApplication::processEvents();
    EXPECT_EQ(scroller->focusPolicy(), Qt::NoFocus);
}

TEST_F(BodyScrollerTest, ABodyWithControlsTakesNoKeyboardItself) {
    addTexts();
    auto* field = new NumberField(body);
    column->addWidget(field);
    show(200);
    EXPECT_EQ(scroller->focusPolicy(), Qt::NoFocus);
    field->setEnabled(false);
    addTexts();
    QCoreApplication::processEvents();
    EXPECT_EQ(scroller->focusPolicy(), Qt::TabFocus);
}

TEST_F(BodyScrollerTest, ABodyThatBecomesWiderThanItsWindowScrollsAside) {
    addTexts();
    show(200);
    EXPECT_EQ(scroller->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    auto* wide = new QLabel(QStringLiteral("wide"));
    wide->setMinimumWidth(500);
    column->addWidget(wide);
    QCoreApplication::processEvents();
    EXPECT_EQ(scroller->horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    delete wide;
    QCoreApplication::processEvents();
    EXPECT_EQ(scroller->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

TEST_F(BodyScrollerTest, NewsInItComesIntoSight) {
    addTexts();
    auto* news = new QLabel;
    news->hide();
    column->addWidget(news);
    show(200);
    news->setText(QStringLiteral("It did not work."));
    news->show();
    bringIntoSightLater(*news);
    QTest::qWait(1);
    EXPECT_TRUE(isInSight(*news));
}

TEST(SidewaysScroller, TheWheelScrollsWhateverControlItIsOver) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        auto* row = new QWidget;
        auto* layout = new QHBoxLayout(row);
        const Controls controls(*layout);
        for (int number = 0; number < 20; ++number)
            layout->addWidget(new QPushButton(QString::number(number)));
        SidewaysScroller scroller(row);
        scroller.setLayoutDirection(direction);
        scroller.resize(300, 60);
        scroller.show();
        QApplication::setActiveWindow(&scroller);
        row->findChild<QPushButton*>()->setFocus();
        QCoreApplication::processEvents();
        ASSERT_TRUE(scroller.hasMore());
        const auto before = controls.values();
        for (QWidget* control : controls.all()) {
            scroller.horizontalScrollBar()->setValue(0);
            turnWheelOver(*control);
            EXPECT_GT(scroller.horizontalScrollBar()->value(), 0)
                << control->metaObject()->className();
        }
        EXPECT_EQ(controls.values(), before);
    }
}

TEST(SidewaysScroller, TheKeyboardIsInSightWhereverItComesFrom) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QWidget window;
        window.setLayoutDirection(direction);
        auto* layout = new QHBoxLayout(&window);
        auto* row = new QWidget;
        auto* buttons = new QHBoxLayout(row);
        for (int number = 0; number < 20; ++number)
            buttons->addWidget(new QPushButton(QString::number(number)));
        auto* scroller = new SidewaysScroller(row, &window);
        layout->addWidget(scroller);
        auto* after = new QPushButton(QStringLiteral("after"));
        layout->addWidget(after);
        window.setFixedSize(400, 80);
        window.show();
        QApplication::setActiveWindow(&window);
        QCoreApplication::processEvents();
        after->setFocus();
        const auto isInSight = [&] {
            const QWidget* part = window.focusWidget();
            return row->isAncestorOf(part) &&
                   scroller->viewport()->rect().contains(
                       QRect(part->mapTo(scroller->viewport(), QPoint()), part->size()));
        };
        QTest::keyClick(&window, Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_TRUE(isInSight());
        EXPECT_EQ(static_cast<QPushButton*>(window.focusWidget())->text(), QStringLiteral("19"));
        after->setFocus();
        QTest::keyClick(&window, Qt::Key_Tab);
        EXPECT_TRUE(isInSight());
        EXPECT_EQ(static_cast<QPushButton*>(window.focusWidget())->text(), QStringLiteral("0"));
    }
}

} // namespace
} // namespace quillabrae::shell
