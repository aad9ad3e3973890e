// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/ImageReader.h"
#include "shell/ShellTest.h"
#include "shell/dialogs/FeedbackAttachmentRow.h"
#include "shell/dialogs/FeedbackDialogView.h"
#include "support/ScriptedHttpClient.h"

#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextCursor>

namespace quillabrae::shell {
namespace {

using platform::HttpFailure;
using platform::HttpReply;

class FeedbackDialogTest : public ShellTest {
protected:
    FeedbackDialogTest() { show(service); }

    void show(const services::FeedbackService& sender) {
        dialog = std::make_unique<FeedbackDialogView>(
            FeedbackDialogView::Environment{sender, attachments, [this](QWidget* parent) {
                                                EXPECT_EQ(parent, dialog.get());
                                                whileChoosing();
                                                return chosen;
                                            }});
        dialog->show();
    }
    static services::ProgramIdentity identity() {
        return {.version = QStringLiteral("1"),
                .build = {},
                .channel = {},
                .language = {},
                .operatingSystemVersion = QStringLiteral("A System")};
    }
    static services::FeedbackAttachmentService::Readers readers() {
        return {
            .file = [](const QString& path, const auto&) { return raster::readImageFile(path); },
            .bytes = [](const QByteArray& bytes, const auto&) { return raster::readImage(bytes); }};
    }
    QPlainTextEdit* text() const { return dialog->findChild<QPlainTextEdit*>(); }
    QPushButton* button(const QString& title) const {
        for (QPushButton* found : dialog->findChildren<QPushButton*>())
            if (found->text() == title && found->isVisible()) return found;
        return nullptr;
    }
    void press(const QString& title) const {
        QPushButton* found = button(title);
        ASSERT_TRUE(found && found->isEnabled()) << qPrintable(title);
        found->click();
    }
    QStringList shownTexts() const {
        QStringList all;
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            if (label->isVisible()) all << label->text();
        return all;
    }
    bool shows(const QString& words) const { return shownTexts().contains(words); }
    void write(const QString& words) const { text()->setPlainText(words); }
    QUrl picture(const QString& name, QSize size = {800, 600}) const {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        EXPECT_TRUE(image.save(folder.filePath(name), "png"));
        return file(name);
    }
    void choose(const QUrl& url) {
        chosen = url;
        press(QStringLiteral("Choose…"));
    }
    bool waitForImage() const {
        return QTest::qWaitFor([this] { return !dialog->isProcessingImage(); }, 20'000);
    }
    QJsonObject lastPayload() const {
        return QJsonDocument::fromJson(http.requests.back().body).object();
    }
    void drop(const QMimeData& data) const { drop(data, *dialog); }
    void drop(const QMimeData& data, QWidget& target) const {
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &enter);
        isDropWelcome = enter.isAccepted();
        QDropEvent event({10.0, 10.0}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
    }

    tests::ScriptedHttpClient http;
    services::FeedbackService service{
        http, services::WebService(QUrl(QStringLiteral("https://example.org"))), identity()};
    services::FeedbackAttachmentService attachments{readers()};
    std::optional<QUrl> chosen;
    std::function<void()> whileChoosing = [] {};
    std::unique_ptr<FeedbackDialogView> dialog;
    mutable bool isDropWelcome = false;
    const QString sendTitle = QStringLiteral("Send Feedback");
    const QString sending = QStringLiteral("Sending feedback…");
    const QString cancel = QStringLiteral("Cancel");
};

TEST_F(FeedbackDialogTest, AsksForWordsAndPerhapsAPicture) {
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Give Feedback"));
    constexpr auto assurance =
        "We take feedback very seriously and work to improve the app quickly, so every "
        "suggestion is appreciated.";
    for (const char* words : {"Give Feedback", "Help shape what Quillabrae becomes next.",
                              "What would make Quillabrae better for you?", assurance, "0 / 5,000",
                              "Optional · compressed before sending"})
        EXPECT_TRUE(shows(QString::fromUtf8(words))) << words;
    EXPECT_TRUE(button(cancel));
    EXPECT_TRUE(button(sendTitle)->isDefault());
    EXPECT_EQ(text()->accessibleName(),
              QStringLiteral("What would make Quillabrae better for you?"));
    EXPECT_FALSE(button(QStringLiteral("Remove")));
    EXPECT_TRUE(dialog->errorMessage().isEmpty());
}

TEST_F(FeedbackDialogTest, CountsCharactersAsPeopleDo) {
    QTest::keyClicks(text(), QStringLiteral("Hello"));
    EXPECT_TRUE(shows(QStringLiteral("5 / 5,000")));
    write(QStringLiteral("👨‍👩‍👧‍👦é"));
    EXPECT_TRUE(shows(QStringLiteral("2 / 5,000")));
    write(QString(5'000, u'x'));
    EXPECT_TRUE(shows(QStringLiteral("5000 / 5,000")));
}

TEST_F(FeedbackDialogTest, SendsWhatWasWrittenAndThanks) {
    write(QStringLiteral("More brushes.\nPlease."));
    press(sendTitle);
    EXPECT_TRUE(dialog->isSending());
    EXPECT_FALSE(button(sendTitle));
    EXPECT_FALSE(button(sending)->isEnabled());
    EXPECT_FALSE(text()->isEnabled());
    EXPECT_EQ(lastPayload()[QStringLiteral("feedback")].toString(),
              QStringLiteral("More brushes.\nPlease."));
    // A second time changes nothing.
    dialog->accept();
    EXPECT_EQ(http.requests.size(), 1U);
    http.answer(HttpReply{200, "{}"});
    EXPECT_TRUE(dialog->isSent());
    EXPECT_TRUE(shows(QStringLiteral("Feedback sent")));
    EXPECT_TRUE(
        shows(QStringLiteral("Thank you. Your feedback will help make Quillabrae better.")));
    EXPECT_FALSE(text()->isVisible());
    EXPECT_FALSE(button(sendTitle));
    press(QStringLiteral("Done"));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(http.requests.size(), 1U);
}

TEST_F(FeedbackDialogTest, AFailureIsToldInPlaceAndTheFormStaysAsItWas) {
    write(QStringLiteral("Hello"));
    choose(picture(QStringLiteral("A shot!.png")));
    ASSERT_TRUE(waitForImage());
    press(sendTitle);
    http.answer(HttpReply{429, R"({"error":"Too much for one day."})"});
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(shows(QStringLiteral("Too much for one day.")));
    EXPECT_EQ(text()->toPlainText(), QStringLiteral("Hello"));
    EXPECT_TRUE(dialog->attachment());
    press(sendTitle);
    EXPECT_FALSE(shows(QStringLiteral("Too much for one day.")));
    http.answer(HttpFailure{QStringLiteral("The request timed out.")});
    EXPECT_TRUE(shows(QStringLiteral("The request timed out.")));
    press(sendTitle);
    EXPECT_EQ(lastPayload()[QStringLiteral("image")][QStringLiteral("filename")].toString(),
              QStringLiteral("A-shot.jpg"));
    http.answer(HttpReply{200, ""});
    EXPECT_TRUE(dialog->isSent());
}

TEST_F(FeedbackDialogTest, NothingAndTooMuchAreRefusedInPlace) {
    const QString refusal = QStringLiteral("Enter feedback of up to 5,000 characters.");
    press(sendTitle);
    EXPECT_EQ(dialog->errorMessage(), refusal);
    EXPECT_FALSE(dialog->isSending());
    write(QString(5'001, u'x'));
    EXPECT_TRUE(shows(QStringLiteral("5001 / 5,000")));
    press(sendTitle);
    EXPECT_EQ(dialog->errorMessage(), refusal);
    EXPECT_TRUE(http.requests.empty());
    write(QString(5'000, u'x'));
    press(sendTitle);
    EXPECT_TRUE(dialog->errorMessage().isEmpty());
    EXPECT_TRUE(dialog->isSending());
}

TEST_F(FeedbackDialogTest, CancelStopsASendingFirstAndClosesThen) {
    const auto leave = [this](const std::function<void()>& how) {
        dialog->show();
        write(QStringLiteral("Hello"));
        dialog->accept();
        ASSERT_TRUE(dialog->isSending());
        how();
        EXPECT_FALSE(dialog->isSending());
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(text()->toPlainText(), QStringLiteral("Hello"));
        EXPECT_FALSE(http.answer(HttpReply{200, ""}));
        EXPECT_FALSE(dialog->isSent());
        EXPECT_TRUE(button(sendTitle)->isEnabled());
        how();
        EXPECT_FALSE(dialog->isVisible());
    };
    leave([this] { press(cancel); });
    leave([this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); });
    leave([this] { dialog->close(); });
}

TEST_F(FeedbackDialogTest, ADialogThatIsDestroyedEndsItsWork) {
    write(QStringLiteral("Hello"));
    dialog->accept();
    dialog.reset();
    EXPECT_FALSE(http.answer(HttpReply{200, ""}));
    show(service);
    choose(picture(QStringLiteral("a.png")));
    dialog.reset();
    QTest::qWait(100);
}

TEST_F(FeedbackDialogTest, ReturnIsALineAndControlReturnSends) {
    QTest::keyClicks(text(), QStringLiteral("one"));
    QTest::keyClick(text(), Qt::Key_Return);
    QTest::keyClicks(text(), QStringLiteral("two"));
    EXPECT_EQ(text()->toPlainText(), QStringLiteral("one\ntwo"));
    EXPECT_FALSE(dialog->isSending());
    QTest::keyClick(text(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(dialog->isSending());
}

TEST_F(FeedbackDialogTest, APictureIsCompressedAndCanBeRemoved) {
    choose(picture(QStringLiteral("A shot!.png")));
    EXPECT_TRUE(dialog->isProcessingImage());
    EXPECT_TRUE(shows(QStringLiteral("Compressing image…")));
    EXPECT_TRUE(shows(QStringLiteral("A shot!.png")));
    EXPECT_FALSE(button(sendTitle)->isEnabled());
    ASSERT_TRUE(waitForImage());
    ASSERT_TRUE(dialog->attachment());
    EXPECT_EQ(dialog->attachment()->originalFilename, QStringLiteral("A shot!.png"));
    EXPECT_TRUE(shows(QStringLiteral("Compressed JPEG · ") +
                      fileSizeText(dialog->attachment()->data.size())));
    EXPECT_TRUE(button(sendTitle)->isEnabled());
    press(QStringLiteral("Remove"));
    EXPECT_FALSE(dialog->attachment());
    EXPECT_TRUE(shows(QStringLiteral("Optional · compressed before sending")));
    write(QStringLiteral("Hello"));
    press(sendTitle);
    EXPECT_TRUE(lastPayload()[QStringLiteral("image")].isNull());
}

TEST_F(FeedbackDialogTest, APictureThatIsRemovedWhileItIsCompressedNeverArrives) {
    choose(picture(QStringLiteral("a.png"), {4000, 3000}));
    press(QStringLiteral("Remove"));
    EXPECT_FALSE(dialog->isProcessingImage());
    QTest::qWait(300);
    EXPECT_FALSE(dialog->attachment());
    EXPECT_TRUE(shows(QStringLiteral("Optional · compressed before sending")));
}

TEST_F(FeedbackDialogTest, APickerThatIsCancelledChangesNothing) {
    press(QStringLiteral("Choose…"));
    EXPECT_FALSE(dialog->isProcessingImage());
    EXPECT_TRUE(shows(QStringLiteral("Optional · compressed before sending")));
}

TEST_F(FeedbackDialogTest, WhatCannotBeAttachedSaysWhy) {
    choose(writeBrokenPicture(QStringLiteral("broken.png")));
    ASSERT_TRUE(waitForImage());
    EXPECT_EQ(dialog->errorMessage(),
              services::FeedbackAttachmentError::unreadableImage().description);
    EXPECT_TRUE(shows(QStringLiteral("Optional · compressed before sending")));
    choose(picture(QStringLiteral("small.png"), {300, 300}));
    EXPECT_TRUE(dialog->errorMessage().isEmpty());
    ASSERT_TRUE(waitForImage());
    EXPECT_EQ(dialog->errorMessage(),
              services::FeedbackAttachmentError::imageTooLarge().description);
    EXPECT_FALSE(dialog->attachment());
}

TEST_F(FeedbackDialogTest, APictureCanBeDropped) {
    QMimeData files;
    files.setUrls({picture(QStringLiteral("dropped one.png"))});
    drop(files);
    EXPECT_TRUE(isDropWelcome);
    ASSERT_TRUE(waitForImage());
    ASSERT_TRUE(dialog->attachment());
    EXPECT_EQ(dialog->attachment()->filename, QStringLiteral("dropped-one.jpg"));

    QFile file(folder.filePath(QStringLiteral("dropped one.png")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QMimeData bytes;
    bytes.setData(QStringLiteral("image/png"), file.readAll());
    drop(bytes);
    ASSERT_TRUE(waitForImage());
    ASSERT_TRUE(dialog->attachment());
    EXPECT_EQ(dialog->attachment()->filename, QStringLiteral("Dropped-image.jpg"));

    QMimeData words;
    words.setText(QStringLiteral("words"));
    drop(words);
    EXPECT_FALSE(isDropWelcome);
    EXPECT_TRUE(dialog->attachment());
}

TEST_F(FeedbackDialogTest, APictureOverTheTextIsTheDialogs) {
    QMimeData files;
    files.setUrls({picture(QStringLiteral("a.png"))});
    drop(files, *text()->viewport());
    EXPECT_TRUE(isDropWelcome);
    EXPECT_TRUE(dialog->isProcessingImage());
    EXPECT_TRUE(text()->toPlainText().isEmpty());
    ASSERT_TRUE(waitForImage());
    QMimeData words;
    words.setText(QStringLiteral("words"));
    drop(words, *text()->viewport());
    EXPECT_TRUE(isDropWelcome);
    EXPECT_EQ(text()->toPlainText(), QStringLiteral("words"));
    EXPECT_TRUE(dialog->attachment());
}

TEST_F(FeedbackDialogTest, WhileItIsSentNoPictureIsTaken) {
    write(QStringLiteral("Hello"));
    dialog->accept();
    QMimeData files;
    files.setUrls({picture(QStringLiteral("a.png"))});
    drop(files);
    EXPECT_FALSE(isDropWelcome);
    EXPECT_FALSE(dialog->isProcessingImage());
}

TEST_F(FeedbackDialogTest, ABuildWithoutAServiceSaysSoAndSendsNothing) {
    const services::FeedbackService none(http, services::WebService(QUrl()), identity());
    show(none);
    EXPECT_TRUE(
        shows(QStringLiteral("This build of Quillabrae has no feedback service "
                             "configured, so nothing can be sent.")));
    EXPECT_FALSE(button(sendTitle)->isEnabled());
    EXPECT_FALSE(text()->isEnabled());
    dialog->accept();
    EXPECT_TRUE(http.requests.empty());
    press(cancel);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(FeedbackDialogTest, TypingInALongTextIsQuick) {
    write(QStringLiteral("word ").repeated(999));
    QElapsedTimer clock;
    clock.start();
    constexpr int keys = 5;
    QTest::keyClicks(text(), QString(keys, u'x'));
    // Generous; a key takes a few milliseconds.
    EXPECT_LT(clock.elapsed() / keys, 100);
    EXPECT_TRUE(shows(QStringLiteral("5000 / 5,000")));
}

TEST_F(FeedbackDialogTest, AWordyServerDoesNotOutgrowTheDialog) {
    write(QStringLiteral("Hello"));
    press(sendTitle);
    http.answer(HttpReply{400, R"({"error":")" + QByteArray(100'000, 'w') + "\"}"});
    EXPECT_LT(dialog->errorMessage().size(), 500);
}

TEST_F(FeedbackDialogTest, TheCoordinatorShowsItOnceTheEventIsOver) {
    coordinator->showFeedbackDialog();
    EXPECT_EQ(dialogs.feedbacksShown, 0);
    runDeferred();
    EXPECT_EQ(dialogs.feedbacksShown, 1);
}

TEST(FileSizes, AreToldInThousandsAndMillions) {
    const std::pair<qint64, const char*> expected[] = {
        {1, "1 byte"},         {999, "999 bytes"},    {1'000, "1 KB"},     {1'499, "1 KB"},
        {1'500, "2 KB"},       {312'345, "312 KB"},   {999'499, "999 KB"}, {999'500, "1.0 MB"},
        {1'000'000, "1.0 MB"}, {1'500'000, "1.5 MB"},
    };
    for (const auto& [bytes, words] : expected)
        EXPECT_EQ(fileSizeText(bytes), QString::fromLatin1(words)) << bytes;
}

TEST_F(FeedbackDialogTest, ADraftStandsUnderWhatIsWrittenAndIsNotSentByItself) {
    int sent = 0;
    dialog = std::make_unique<FeedbackDialogView>(FeedbackDialogView::Environment{
        service, attachments, [](QWidget*) { return std::nullopt; },
        [] { return QStringLiteral("\n\nreport"); }, [&] { ++sent; }});
    dialog->show();
    EXPECT_EQ(text()->toPlainText(), QStringLiteral("\n\nreport"));
    EXPECT_EQ(text()->textCursor().position(), 0);
    dialog->reject();
    EXPECT_EQ(sent, 0);
}

TEST_F(FeedbackDialogTest, MayGoWhileItsPickerIsOpen) {
    chosen = file(QStringLiteral("picture.png"));
    whileChoosing = [this] { dialog.reset(); };
    Q_EMIT dialog->findChild<FeedbackAttachmentRow*>()->chooseRequested();
    EXPECT_EQ(dialog, nullptr);
}

} // namespace
} // namespace quillabrae::shell
