// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/FeedbackAttachmentService.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <utility>

namespace quillabrae::services {
namespace {

/// The context of this file's texts, for translators.
struct FeedbackAttachmentTexts {
    Q_DECLARE_TR_FUNCTIONS(FeedbackAttachmentTexts)
};

using platform::WorkControl;

constexpr double greatestDimension = 1800.0;
constexpr double leastDimension = 480.0;
constexpr double dimensionStep = 0.75;
constexpr auto compressionFactors = std::to_array({0.82, 0.72, 0.62, 0.52, 0.42});
constexpr qsizetype tooManyBytes = 1'500'001;

/// The picture over white with its greater side scaled to `maximumDimension`, whose fraction counts
/// for the other side.
QImage scaledOverWhite(const raster::RasterImage& image, double maximumDimension) {
    const double scale = maximumDimension / std::max(image.width(), image.height());
    const auto scaled = [scale](int side) {
        return std::max(static_cast<int>(std::lround(side * scale)), 1);
    };
    const QSize size(scaled(image.width()), scaled(image.height()));
    QImage picture(size, QImage::Format_RGB32);
    if (picture.isNull()) throw std::bad_alloc();
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.drawImage(
        0, 0, image.toQImage().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    return picture;
}

bool isLetterMarkOrNumber(char32_t character) {
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

QString lastPathComponentWithoutExtension(const QString& path) {
    const QString name = path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.first(dot) : name;
}

} // namespace

FeedbackAttachmentError FeedbackAttachmentError::unreadableImage() {
    return {FeedbackAttachmentTexts::tr(
        "That image could not be opened. Try a PNG, JPEG, HEIC, or another "
        "common image format.")};
}
FeedbackAttachmentError FeedbackAttachmentError::compressionFailed() {
    return {FeedbackAttachmentTexts::tr(
        "That image could not be compressed. Please try another image.")};
}
FeedbackAttachmentError FeedbackAttachmentError::imageTooLarge() {
    return {
        FeedbackAttachmentTexts::tr("That image is too large to attach, even after compression.")};
}

QString attachmentFilename(const QString& sourceFilename) {
    QString name;
    for (const char32_t character : lastPathComponentWithoutExtension(sourceFilename).toUcs4()) {
        const bool isKept =
            isLetterMarkOrNumber(character) || character == U'-' || character == U'_';
        name += isKept ? QString::fromUcs4(&character, 1) : QStringLiteral("-");
    }
    while (name.startsWith(u'-')) name.remove(0, 1);
    while (name.endsWith(u'-')) name.chop(1);
    if (name.isEmpty()) name = QStringLiteral("feedback-image");
    return name + QStringLiteral(".jpg");
}

QByteArray FeedbackAttachmentService::encodedJpeg(const QImage& picture, double compressionFactor) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QImageWriter writer(&file, "jpeg");
    writer.setQuality(static_cast<int>(std::lround(compressionFactor * 100)));
    return writer.write(picture) ? file.data() : QByteArray();
}

FeedbackAttachmentOutcome FeedbackAttachmentService::prepare(const raster::RasterImage& image,
                                                             const QString& sourceFilename,
                                                             const WorkControl& control,
                                                             const Encoder& encoder) {
    if (image.isNull()) return FeedbackAttachmentError::unreadableImage();
    const double greaterSide = std::max(image.width(), image.height());
    for (double dimension = std::min(greaterSide, greatestDimension); dimension >= leastDimension;
         dimension *= dimensionStep) {
        const QImage picture = scaledOverWhite(image, dimension);
        for (const double factor : compressionFactors) {
            control.stopIfCancelled();
            QByteArray data = encoder(picture, factor);
            if (data.isEmpty()) return FeedbackAttachmentError::compressionFailed();
            if (data.size() < tooManyBytes)
                return FeedbackImageAttachment{std::move(data), attachmentFilename(sourceFilename),
                                               sourceFilename};
        }
    }
    return FeedbackAttachmentError::imageTooLarge();
}

FeedbackAttachmentService::FeedbackAttachmentService(Readers readers,
                                                     const platform::LatestWorkFactory& work,
                                                     Encoder encoder)
    : m_readers(std::move(readers)), m_encoder(std::move(encoder)), m_work(work()) {}

FeedbackAttachmentService::~FeedbackAttachmentService() {
    cancel();
}

void FeedbackAttachmentService::prepare(const QUrl& url, const Completion& completion) {
    const auto read = [read = m_readers.file, path = url.toLocalFile()](
                          const WorkControl& control) -> std::optional<raster::RasterImage> {
        if (path.isEmpty()) return std::nullopt;
        return read(path, control);
    };
    start(read, url.fileName(), completion);
}

void FeedbackAttachmentService::prepare(const QByteArray& bytes, const QString& sourceFilename,
                                        const Completion& completion) {
    const auto read = [read = m_readers.bytes, bytes](const WorkControl& control) {
        return read(bytes, control);
    };
    start(read, sourceFilename, completion);
}

void FeedbackAttachmentService::cancel() {
    if (m_control) m_control->cancel();
    m_control.reset();
    m_work->drop();
}

void FeedbackAttachmentService::start(const Read& read, const QString& sourceFilename,
                                      const Completion& completion) {
    cancel();
    const auto control = std::make_shared<WorkControl>();
    m_control = control;
    const auto prepared = [=, encoder = m_encoder]() -> FeedbackAttachmentOutcome {
        try {
            const auto image = read(*control);
            if (!image) return FeedbackAttachmentError::unreadableImage();
            return prepare(*image, sourceFilename, *control, encoder);
        } catch (const std::bad_alloc&) {
            return FeedbackAttachmentError::compressionFailed();
        }
    };
    m_work->run([=]() -> platform::LatestWork::Delivery {
        try {
            return [completion, outcome = prepared()] { completion(outcome); };
        } catch (const platform::WorkCancelled&) {
            return {};
        }
    });
}

} // namespace quillabrae::services
