// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/ImageReader.h"
#include "services/FeedbackAttachmentService.h"

#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace quillabrae::services {
namespace {

using platform::WorkControl;
using raster::RasterImage;

constexpr qsizetype largestFile = 1'500'000;
/// From Debian's wallpaper packages; 5312 by 2988 pixels.
constexpr auto photograph = "/usr/share/backgrounds/seeding_by_Clements_Engelhardt.jpg";

RasterImage plain(int width, int height, const QColor& color = Qt::darkGreen) {
    QImage picture(width, height, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(color);
    return RasterImage::fromQImage(std::move(picture));
}

/// Nothing is harder to compress.
RasterImage noise(int width, int height) {
    QRandomGenerator random(7);
    QImage picture(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<quint32*>(picture.scanLine(y));
        random.fillRange(row, width);
    }
    return RasterImage::fromQImage(std::move(picture));
}

const FeedbackImageAttachment& attachmentIn(const FeedbackAttachmentOutcome& outcome) {
    static const FeedbackImageAttachment none;
    const auto* found = std::get_if<FeedbackImageAttachment>(&outcome);
    EXPECT_TRUE(found) << "no attachment";
    return found ? *found : none;
}

QString errorIn(const FeedbackAttachmentOutcome& outcome) {
    const auto* error = std::get_if<FeedbackAttachmentError>(&outcome);
    return error ? error->description : QStringLiteral("a picture");
}

/// An encoder whose every file is too large, until it has been asked so often.
struct Stubborn {
    struct Ask {
        QSize size;
        double factor;
        friend bool operator==(const Ask&, const Ask&) = default;
    };
    std::vector<Ask> asked;
    std::size_t yieldsAfter = SIZE_MAX;
    qsizetype yields = largestFile;

    FeedbackAttachmentOutcome prepare(const RasterImage& image) {
        return FeedbackAttachmentService::prepare(
            image, QStringLiteral("a.png"), {}, [this](const QImage& picture, double factor) {
                asked.push_back({picture.size(), factor});
                return QByteArray(asked.size() > yieldsAfter ? yields : largestFile + 1, 'j');
            });
    }
    std::vector<QSize> sizes() const {
        std::vector<QSize> found;
        for (const Ask& ask : asked)
            if (found.empty() || found.back() != ask.size) found.push_back(ask.size);
        return found;
    }
};

TEST(FeedbackLadder, TriesFiveQualitiesAtEachOfFiveSizes) {
    Stubborn encoder;
    EXPECT_EQ(errorIn(encoder.prepare(plain(4000, 3000))),
              QStringLiteral("That image is too large to attach, even after compression."));
    // 1800, 1350, 1012.5, 759.375 and 569.53, and three quarters of each.
    const QSize sizes[] = {{1800, 1350}, {1350, 1013}, {1013, 759}, {759, 570}, {570, 427}};
    std::vector<Stubborn::Ask> expected;
    for (const QSize& size : sizes)
        for (const double factor : {0.82, 0.72, 0.62, 0.52, 0.42})
            expected.push_back({size, factor});
    EXPECT_EQ(encoder.asked, expected);
}

TEST(FeedbackLadder, TakesTheFirstFileThatIsSmallEnough) {
    for (const std::size_t refused : {0U, 1U, 4U, 5U, 24U}) {
        Stubborn encoder{.asked = {}, .yieldsAfter = refused};
        EXPECT_EQ(attachmentIn(encoder.prepare(plain(4000, 3000))).data.size(), largestFile);
        EXPECT_EQ(encoder.asked.size(), refused + 1);
    }
    Stubborn byOneByte{.asked = {}, .yieldsAfter = 0, .yields = largestFile + 1};
    EXPECT_EQ(errorIn(byOneByte.prepare(plain(500, 500))),
              FeedbackAttachmentError::imageTooLarge().description);
}

TEST(FeedbackLadder, APictureIsNeverEnlarged) {
    Stubborn encoder;
    encoder.prepare(plain(600, 1000));
    EXPECT_EQ(encoder.sizes(), (std::vector<QSize>{{600, 1000}, {450, 750}, {338, 563}}));
    Stubborn narrow;
    narrow.prepare(plain(1, 7200));
    EXPECT_EQ(narrow.sizes().front(), QSize(1, 1800));
}

TEST(FeedbackLadder, ASmallPictureIsRefusedBeforeItIsEncoded) {
    for (const QSize size : {QSize(300, 300), QSize(479, 479), QSize(1, 1)}) {
        Stubborn encoder{.asked = {}, .yieldsAfter = 0};
        EXPECT_EQ(errorIn(encoder.prepare(plain(size.width(), size.height()))),
                  FeedbackAttachmentError::imageTooLarge().description);
        EXPECT_TRUE(encoder.asked.empty());
    }
    Stubborn encoder{.asked = {}, .yieldsAfter = 0};
    EXPECT_FALSE(attachmentIn(encoder.prepare(plain(480, 1))).data.isEmpty());
}

TEST(FeedbackLadder, AnEncoderThatFailsSaysSo) {
    const auto outcome = FeedbackAttachmentService::prepare(
        plain(500, 500), {}, {}, [](const QImage&, double) { return QByteArray(); });
    EXPECT_EQ(errorIn(outcome),
              QStringLiteral("That image could not be compressed. Please try another image."));
    EXPECT_EQ(errorIn(FeedbackAttachmentService::prepare(RasterImage(), {})),
              QStringLiteral("That image could not be opened. Try a PNG, JPEG, HEIC, or another "
                             "common image format."));
}

TEST(FeedbackLadder, StopsBetweenTwoFilesWhenItIsToldSo) {
    WorkControl control;
    int asked = 0;
    EXPECT_THROW(FeedbackAttachmentService::prepare(plain(4000, 3000), {}, control,
                                                    [&](const QImage&, double) {
                                                        if (++asked == 3) control.cancel();
                                                        return QByteArray(largestFile + 1, 'j');
                                                    }),
                 platform::WorkCancelled);
    EXPECT_EQ(asked, 3);
}

TEST(FeedbackLadder, TheFileIsAJpegOverWhite) {
    QImage picture(960, 640, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(Qt::transparent);
    for (int y = 0; y < 640; ++y)
        for (int x = 0; x < 480; ++x) picture.setPixelColor(x, y, QColor(0, 0, 0, 128));
    const auto outcome = FeedbackAttachmentService::prepare(
        RasterImage::fromQImage(std::move(picture)), QStringLiteral("half.png"));
    const QByteArray& data = attachmentIn(outcome).data;
    EXPECT_TRUE(data.startsWith("\xff\xd8\xff"));
    const QImage sent = QImage::fromData(data, "jpeg");
    EXPECT_EQ(sent.size(), QSize(960, 640));
    EXPECT_FALSE(sent.hasAlphaChannel());
    EXPECT_NEAR(sent.pixelColor(200, 300).lightness(), 127, 2);
    EXPECT_NEAR(sent.pixelColor(800, 300).lightness(), 255, 2);
    EXPECT_EQ(attachmentIn(outcome).originalFilename, QStringLiteral("half.png"));
    EXPECT_EQ(attachmentIn(outcome).filename, QStringLiteral("half.jpg"));
}

TEST(FeedbackLadder, APhotographOfSixteenMegapixelsFitsAtTheFirstTry) {
    ASSERT_TRUE(QFile::exists(QString::fromLatin1(photograph))) << photograph;
    const auto image = raster::readImageFile(QString::fromLatin1(photograph));
    ASSERT_TRUE(image);
    const auto outcome =
        FeedbackAttachmentService::prepare(*image, QString::fromLatin1(photograph));
    const QByteArray& data = attachmentIn(outcome).data;
    EXPECT_LE(data.size(), largestFile);
    // 2988 * 1800 / 5312 = 1012.5
    EXPECT_EQ(QImage::fromData(data, "jpeg").size(), QSize(1800, 1013));
}

TEST(FeedbackLadder, NoiseGoesDownUntilItFits) {
    const RasterImage source = noise(1800, 1800);
    std::vector<Stubborn::Ask> asked;
    std::vector<qsizetype> sizes;
    const auto outcome = FeedbackAttachmentService::prepare(
        source, QStringLiteral("noise"), {}, [&](const QImage& picture, double factor) {
            QByteArray data = FeedbackAttachmentService::encodedJpeg(picture, factor);
            asked.push_back({picture.size(), factor});
            sizes.push_back(data.size());
            return data;
        });
    ASSERT_GT(sizes.size(), 1U);
    for (std::size_t i = 0; i + 1 < sizes.size(); ++i) EXPECT_GT(sizes[i], largestFile);
    EXPECT_LE(sizes.back(), largestFile);
    EXPECT_EQ(attachmentIn(outcome).data.size(), sizes.back());
    EXPECT_EQ(QImage::fromData(attachmentIn(outcome).data).size(), asked.back().size);
}

TEST(AttachmentFilenames, KeepLettersDigitsHyphensAndUnderscores) {
    const std::pair<const char*, const char*> expected[] = {
        {"My photo!.png", "My-photo.jpg"},
        {"a_b-c.PNG", "a_b-c.jpg"},
        {"/home/me/pictures/shot.tar.gz", "shot-tar.jpg"},
        {"no extension", "no-extension.jpg"},
        {"été 2024.heic", "été-2024.jpg"},
        {"絵.png", "絵.jpg"},
        {"--x--.png", "x.jpg"},
        {"!!!.png", "feedback-image.jpg"},
        {"", "feedback-image.jpg"},
        {"/", "feedback-image.jpg"},
        {"🎨.png", "feedback-image.jpg"},
        {"a\"b\r\nc\\d.png", "a-b--c-d.jpg"},
        {".hidden", "hidden.jpg"},
        {"...", "feedback-image.jpg"},
    };
    for (const auto& [source, name] : expected)
        EXPECT_EQ(attachmentFilename(QString::fromUtf8(source)), QString::fromUtf8(name)) << source;
}

class FeedbackAttachments : public testing::Test {
protected:
    FeedbackAttachmentService::Readers readers() {
        return {.file = [this](const QString& path,
                               const WorkControl& control) -> std::optional<RasterImage> {
                    readOn = QThread::currentThread();
                    while (isHeld && !control.isCancelled()) QThread::msleep(1);
                    control.stopIfCancelled();
                    return raster::readImageFile(path);
                },
                .bytes = [](const QByteArray& bytes,
                            const WorkControl&) { return raster::readImage(bytes); }};
    }
    QUrl save(const QString& name, const RasterImage& image) const {
        const QString path = folder.filePath(name);
        EXPECT_TRUE(image.toQImage().save(path, "png"));
        return QUrl::fromLocalFile(path);
    }
    FeedbackAttachmentOutcome wait() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !outcomes.empty(); }, 20'000));
        return outcomes.empty() ? FeedbackAttachmentError{} : outcomes.front();
    }
    FeedbackAttachmentService::Completion taken() {
        return [this](const FeedbackAttachmentOutcome& outcome) {
            EXPECT_EQ(QThread::currentThread(), qApp->thread());
            outcomes.push_back(outcome);
        };
    }

    QTemporaryDir folder;
    std::atomic<bool> isHeld = false;
    std::atomic<QThread*> readOn = nullptr;
    std::vector<FeedbackAttachmentOutcome> outcomes;
};

TEST_F(FeedbackAttachments, AFileIsReadAndCompressedAwayFromTheMainThread) {
    FeedbackAttachmentService service(readers());
    service.prepare(save(QStringLiteral("A shot!.png"), plain(700, 500)), taken());
    EXPECT_TRUE(outcomes.empty());
    const FeedbackAttachmentOutcome outcome = wait();
    EXPECT_NE(readOn.load(), qApp->thread());
    EXPECT_EQ(attachmentIn(outcome).filename, QStringLiteral("A-shot.jpg"));
    EXPECT_EQ(attachmentIn(outcome).originalFilename, QStringLiteral("A shot!.png"));
    EXPECT_EQ(QImage::fromData(attachmentIn(outcome).data).size(), QSize(700, 500));
}

TEST_F(FeedbackAttachments, APictureWithoutAFileIsTakenByItsBytes) {
    QFile file(save(QStringLiteral("b.png"), plain(700, 500)).toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    FeedbackAttachmentService service(readers());
    service.prepare(file.readAll(), QStringLiteral("dropped"), taken());
    EXPECT_EQ(attachmentIn(wait()).filename, QStringLiteral("dropped.jpg"));
}

TEST_F(FeedbackAttachments, WhatIsNoPictureCannotBeOpened) {
    QFile file(folder.filePath(QStringLiteral("c.png")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a picture");
    file.close();
    FeedbackAttachmentService service(readers());
    for (const QUrl& url :
         {QUrl::fromLocalFile(file.fileName()), QUrl::fromLocalFile(folder.path()),
          QUrl::fromLocalFile(folder.filePath(QStringLiteral("missing.png"))),
          QUrl(QStringLiteral("https://example.org/a.png"))}) {
        outcomes.clear();
        service.prepare(url, taken());
        EXPECT_EQ(errorIn(wait()), FeedbackAttachmentError::unreadableImage().description);
    }
}

TEST_F(FeedbackAttachments, OnlyTheLatestPictureArrives) {
    FeedbackAttachmentService service(readers());
    isHeld = true;
    service.prepare(save(QStringLiteral("first.png"), plain(700, 500)), taken());
    ASSERT_TRUE(QTest::qWaitFor([this] { return readOn != nullptr; }, 20'000));
    service.prepare(save(QStringLiteral("second.png"), plain(600, 500)), taken());
    isHeld = false;
    EXPECT_EQ(attachmentIn(wait()).filename, QStringLiteral("second.jpg"));
    QTest::qWait(50);
    EXPECT_EQ(outcomes.size(), 1U);
}

TEST_F(FeedbackAttachments, CancelledWorkIsNotHeardOfAgain) {
    FeedbackAttachmentService service(readers());
    isHeld = true;
    service.prepare(save(QStringLiteral("a.png"), plain(700, 500)), taken());
    ASSERT_TRUE(QTest::qWaitFor([this] { return readOn != nullptr; }, 20'000));
    service.cancel();
    QTest::qWait(100);
    EXPECT_TRUE(outcomes.empty());
    service.cancel();
}

TEST_F(FeedbackAttachments, AServiceThatGoesDoesNotWaitForTheRest) {
    isHeld = true;
    {
        FeedbackAttachmentService service(readers());
        service.prepare(save(QStringLiteral("a.png"), plain(700, 500)), taken());
        ASSERT_TRUE(QTest::qWaitFor([this] { return readOn != nullptr; }, 20'000));
    }
    QTest::qWait(20);
    EXPECT_TRUE(outcomes.empty());
}

} // namespace
} // namespace quillabrae::services
