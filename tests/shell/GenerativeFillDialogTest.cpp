// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIImageEditService.h"
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"
#include "raster/DecodeCache.h"
#include "shell/ShellTest.h"
#include "shell/dialogs/GenerativeFillDialog.h"
#include "support/ScriptedHttpClient.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>

namespace quillabrae::shell {
namespace {

using platform::HttpFailure;
using platform::HttpReply;

class GenerativeFillDialogTest : public ShellTest {
protected:
    GenerativeFillDialogTest() {
        keychain.saveAPIKey(QStringLiteral("sk"));
        generativeFill.emplace(store::GenerativeFillServices{keychain, imageEdit});
        makeShell();
        makeProject(*store);
        select(true);
        dialog = std::make_unique<GenerativeFillDialog>(*store);
        dialog->show();
    }
    // The dialog leans on the store, which the base destroys.
    ~GenerativeFillDialogTest() override { dialog.reset(); }

    void select(bool isSelected) {
        store->editActiveProject([=](model::PaintProject& edited) {
            edited.isCanvasSelected = isSelected;
            edited.pixelSelection.reset();
            if (isSelected) edited.pixelSelection = model::PixelSelection{1, 1, 3, 3, std::nullopt};
        });
    }
    static HttpReply picture() {
        QImage image(8, 6, QImage::Format_ARGB32);
        image.fill(Qt::red);
        const auto png = raster::encodedImage(raster::RasterImage::fromQImage(std::move(image)));
        return {200, R"({"data":[{"b64_json":")" + png.toByteArray().toBase64() + R"("}]})"};
    }
    /// Presses the dialog's button and has the secret store answer.
    void generate() {
        dialog->accept();
        QCoreApplication::processEvents();
    }
    QPlainTextEdit* prompt() const { return dialog->findChild<QPlainTextEdit*>(); }
    QStringList shownTexts() const {
        QStringList all;
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            if (label->isVisible()) all << label->text();
        return all;
    }
    QString lastEntry() const {
        return store->history(*store->activeProjectID()).entries.back().title;
    }

    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    tests::ScriptedHttpClient http;
    effects::OpenAIImageEditService imageEdit{http, QUrl(QStringLiteral("https://example.org"))};
    std::unique_ptr<GenerativeFillDialog> dialog;
    const QString working = QStringLiteral("Generating and applying pixels...");
};

TEST_F(GenerativeFillDialogTest, StartsWithTheNewestModelAndTheContext) {
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Generative Fill"));
    EXPECT_EQ(dialog->size(), QSize(520, 384));
    EXPECT_EQ(dialog->request(), effects::GenerativeFillRequest{});
    EXPECT_TRUE(shownTexts().contains(
        QStringLiteral("Replace selected pixels using your OpenAI API key. Results may vary.")));
    EXPECT_TRUE(shownTexts().contains(QStringLiteral(
        "Sends a flattened full-canvas image so the model can complete nearby content.")));
    EXPECT_FALSE(shownTexts().contains(working));
}

TEST_F(GenerativeFillDialogTest, AsksForWhatWasTypedAndChosen) {
    QTest::keyClicks(prompt(), QStringLiteral("a hat"));
    QTest::keyClick(prompt(), Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(prompt(), QStringLiteral("in red"));
    dialog->findChild<QComboBox*>()->setCurrentText(QStringLiteral("GPT Image 1 Mini"));
    dialog->findChild<QCheckBox*>()->click();
    EXPECT_EQ(dialog->request(), (effects::GenerativeFillRequest{
                                     QStringLiteral("a hat\nin red"),
                                     effects::GenerativeFillImageModel::gptImage1Mini, false}));
}

TEST_F(GenerativeFillDialogTest, ReturnGeneratesAndTheDialogClosesWhenThePixelsAreThere) {
    QTest::keyClick(prompt(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isGenerating());
    EXPECT_TRUE(shownTexts().contains(working));
    EXPECT_FALSE(prompt()->isEnabled());
    // A second time changes nothing.
    generate();
    EXPECT_EQ(http.requests.size(), 1U);
    http.answer(picture());
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(lastEntry(), QStringLiteral("Generative Fill"));
}

TEST_F(GenerativeFillDialogTest, AFailureIsToldAndCanBeTriedAgain) {
    generate();
    http.answer(HttpReply{429, R"({"error":{"message":"Too many requests."}})"});
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Too many requests.")));
    EXPECT_FALSE(shownTexts().contains(working));
    EXPECT_TRUE(prompt()->isEnabled());
    generate();
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("Too many requests.")));
    http.answer(picture());
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(GenerativeFillDialogTest, WhatFailsAtOnceIsTold) {
    keychain.removeAPIKey();
    generate();
    EXPECT_FALSE(dialog->isGenerating());
    EXPECT_TRUE(shownTexts().contains(QStringLiteral(
        "Add an OpenAI API key in Settings > Intelligence before using generative fill.")));
}

TEST_F(GenerativeFillDialogTest, WaitingForTheKeyCanBeCancelled) {
    secrets.isSlow = true;
    generate();
    EXPECT_TRUE(dialog->isGenerating());
    EXPECT_TRUE(shownTexts().contains(working));
    dialog->reject();
    secrets.isSlow = false;
    QCoreApplication::processEvents();
    EXPECT_TRUE(http.requests.empty());
}

TEST_F(GenerativeFillDialogTest, CancelEscapeAndTheCloseButtonGiveTheFillUp) {
    const auto leave = [this](const std::function<void()>& how) {
        dialog->show();
        generate();
        ASSERT_TRUE(dialog->isGenerating());
        how();
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_FALSE(http.answer(picture()));
        EXPECT_NE(lastEntry(), QStringLiteral("Generative Fill"));
    };
    leave([this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); });
    leave([this] { dialog->close(); });
    leave([this] { dialog->reject(); });
}

TEST_F(GenerativeFillDialogTest, ADialogThatIsDestroyedGivesTheFillUp) {
    generate();
    dialog.reset();
    EXPECT_FALSE(http.answer(picture()));
}

TEST_F(GenerativeFillDialogTest, IsShownForASelectionOnly) {
    select(false);
    coordinator->showGenerativeFillDialog();
    runDeferred();
    EXPECT_EQ(dialogs.generativeFillsShown, 0);
    select(true);
    coordinator->showGenerativeFillDialog();
    EXPECT_EQ(dialogs.generativeFillsShown, 0);
    runDeferred();
    EXPECT_EQ(dialogs.generativeFillsShown, 1);
}

} // namespace
} // namespace quillabrae::shell
