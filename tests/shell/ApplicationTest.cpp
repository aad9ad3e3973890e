// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidget.h"
#include "raster/DecodeCache.h"
#include "raster/PixelMemory.h"
#include "shell/app/Application.h"
#include "store/StoreTest.h"
#include "support/MemoryRefusal.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <new>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace quillabrae::shell {
namespace {

/// Has no memory for a press, nor for a repaint that is asked for.
class Greedy final : public QWidget {
public:
    using QWidget::QWidget;
    int presses = 0;
    int releases = 0;
    int paints = 0;
    bool isShort = false;

protected:
    void mousePressEvent(QMouseEvent*) override {
        ++presses;
        throw std::bad_alloc();
    }
    void mouseReleaseEvent(QMouseEvent*) override { ++releases; }
    void paintEvent(QPaintEvent*) override {
        ++paints;
        QPainter painter(this);
        painter.fillRect(rect(), Qt::red);
        if (isShort) throw std::bad_alloc();
    }
};

/// While alive, what is allocated is not looked at for leaks. An exception that passes through Qt
/// leaves behind what its frames held, some bytes each time.
class LeaksOfQtAllowed {
public:
#ifdef __SANITIZE_ADDRESS__
    LeaksOfQtAllowed() {
        __lsan_disable();
    }
    ~LeaksOfQtAllowed() {
        __lsan_enable();
    }
#else
    LeaksOfQtAllowed() = default;
    ~LeaksOfQtAllowed() = default;
#endif
    LeaksOfQtAllowed(const LeaksOfQtAllowed&) = delete;
    LeaksOfQtAllowed& operator=(const LeaksOfQtAllowed&) = delete;
};

class ApplicationMemory : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(application, nullptr);
        window.resize(40, 30);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    LeaksOfQtAllowed leaks;
    Application* application = qobject_cast<Application*>(QCoreApplication::instance());
    QSignalSpy refused{application, &Application::memoryRefused};
    Greedy window;
};

TEST_F(ApplicationMemory, AnEventThatItEndsInIsDroppedAndTheNextOnesCome) {
    // From the window system, by way of the window, its widget and all filters.
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {10, 10});
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {10, 10});
    EXPECT_EQ(window.presses, 2);
    EXPECT_EQ(window.releases, 2);
}

TEST_F(ApplicationMemory, ItIsToldOnceWhatHasFailedIsOver) {
    QTest::mousePress(&window, Qt::LeftButton);
    EXPECT_EQ(refused.count(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(refused.count(), 1);
}

TEST_F(ApplicationMemory, ARepaintThatItEndsInIsDroppedAndTheNextOneIsWhole) {
    const int before = window.paints;
    window.isShort = true;
    window.repaint();
    EXPECT_EQ(window.paints, before + 1);
    window.isShort = false;
    window.repaint();
    EXPECT_EQ(window.paints, before + 2);
    EXPECT_EQ(window.grab().toImage().pixelColor(20, 15), QColor(Qt::red));
    QCoreApplication::processEvents();
    EXPECT_EQ(refused.count(), 1);
}

TEST_F(ApplicationMemory, ACallThatWasQueuedIsAnEventLikeOthers) {
    bool hasGoneOn = false;
    QTimer::singleShot(0, &window, [] { throw std::bad_alloc(); });
    QTimer::singleShot(0, &window, [&] { hasGoneOn = true; });
    QTRY_VERIFY(hasGoneOn);
    QCoreApplication::processEvents();
    EXPECT_EQ(refused.count(), 1);
}

/// The canvas on the program's own application.
class CanvasMemoryOfTheApplication : public store::StoreTest {
protected:
    LeaksOfQtAllowed leaks;
    Application* application = qobject_cast<Application*>(QCoreApplication::instance());
    QSignalSpy refused{application, &Application::memoryRefused};
    std::unique_ptr<store::ProjectStore> projects = makeStore();
};

TEST_F(CanvasMemoryOfTheApplication, ARepaintThatLacksALayerIsToldAndTheNextOneIsWhole) {
    if (!tests::MemoryRefusal::isAvailable()) GTEST_SKIP() << "another allocator is in use";
    // The pixels of a layer, and no less.
    constexpr std::size_t large = std::size_t{400} * 300 * 4;
    projects->createUntitledProject(400, 300, 96);
    canvas::CanvasWidget widget(*projects);
    widget.resize(300, 200);
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    const QImage whole = widget.grab().toImage();
    std::size_t number = 0;
    for (bool wasRefused = true; wasRefused; ++number) {
        ASSERT_LT(number, 100U);
        raster::clearDecodeCache();
        raster::releaseKeptPixelMemory();
        refused.clear();
        {
            const tests::MemoryRefusal refusal(number + 1, large);
            widget.viewport()->repaint();
            wasRefused = refusal.hasHappened();
        }
        QCoreApplication::processEvents();
        EXPECT_EQ(refused.count(), wasRefused ? 1 : 0) << number;
        EXPECT_EQ(widget.grab().toImage(), whole) << number;
    }
    EXPECT_GT(number, 1U);
}

} // namespace
} // namespace quillabrae::shell
