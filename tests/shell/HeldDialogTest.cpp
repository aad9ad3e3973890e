// SPDX-License-Identifier: GPL-3.0-or-later
// A window that goes while a dialog of it is open takes the dialog along; who asked gets no answer.
#include "services/FeedbackAttachmentService.h"
#include "services/FeedbackService.h"
#include "services/WebService.h"
#include "shell/dialogs/Alert.h"
#include "shell/dialogs/DesktopDialogs.h"
#include "shell/dialogs/DesktopWorkRunner.h"
#include "shell/dialogs/SVGSizeDialogView.h"
#include "support/ScriptedHttpClient.h"

#include <QApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace quillabrae::shell {
namespace {

class HeldDialogTest : public testing::Test {
protected:
    /// Has the window go once its dialog is open.
    QWidget* doomed() {
        window->show();
        auto* timer = new QTimer(window.get());
        QObject::connect(timer, &QTimer::timeout, timer, [this] {
            const QWidget* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr) return;
            EXPECT_EQ(dialog->parentWidget(), window.get());
            window.reset();
        });
        timer->start(1);
        return window.get();
    }

    tests::ScriptedHttpClient http;
    services::FeedbackService service{http, services::WebService({}), {}};
    services::FeedbackAttachmentService attachments{{}};
    DesktopDialogs dialogs{{service, attachments, [](QWidget*) { return std::nullopt; }}};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
};

TEST_F(HeldDialogTest, NoProjectIsMade) {
    EXPECT_FALSE(dialogs.requestNewProject({8, 6}, doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, NothingIsResized) {
    EXPECT_FALSE(dialogs.requestResize({ResizeDialogMode::canvas, {8, 6}, 96, {}}, doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, NothingIsTurned) {
    EXPECT_FALSE(dialogs.requestRotateZoom(doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, NoLayerGetsOtherProperties) {
    EXPECT_FALSE(dialogs.requestLayerProperties({}, doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, NothingIsAligned) {
    EXPECT_FALSE(dialogs.requestAlignObject([](store::AlignObjectAction) {}, doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, NoColorIsRemoved) {
    EXPECT_FALSE(dialogs.requestColorRemoval(
        {}, [](const store::ColorRemovalSettings&) {}, doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, NoSvgIsImported) {
    EXPECT_FALSE(SVGSizeDialogView::ask({8, 6}, doomed()));
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, AnAlertIsAnsweredWithItsLastButton) {
    EXPECT_EQ(runAlert(Alerts::saveBeforeClosing(QStringLiteral("lake")), doomed()), 2);
    EXPECT_EQ(window, nullptr);
}

TEST_F(HeldDialogTest, WorkGoesOnWithoutItsDialog) {
    DesktopWorkRunner runner([this] { return doomed(); }, std::chrono::milliseconds(1));
    std::atomic<bool> isWindowGone = false;
    bool isDone = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] { isWindowGone = window == nullptr; });
    watch.start(1);
    runner.run(QStringLiteral("Saving"), [&](platform::WorkControl&) {
        for (int i = 0; i < 10000 && !isWindowGone; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        isDone = isWindowGone;
    });
    EXPECT_TRUE(isDone);
}

} // namespace
} // namespace quillabrae::shell
