// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LatestWork.h"
#include "platform/WorkRunner.h"
#include "raster/RasterImage.h"
#include "services/FeedbackImageAttachment.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace quillabrae::services {

/// Why a picture cannot be attached, as a sentence for the user.
struct FeedbackAttachmentError {
    QString description;

    static FeedbackAttachmentError unreadableImage();
    static FeedbackAttachmentError compressionFailed();
    static FeedbackAttachmentError imageTooLarge();

    friend bool operator==(const FeedbackAttachmentError&,
                           const FeedbackAttachmentError&) = default;
};

using FeedbackAttachmentOutcome = std::variant<FeedbackImageAttachment, FeedbackAttachmentError>;

/// Makes pictures small enough to go with feedback.
///
/// The greater side starts at that of the picture, at most 1800, and at each size the quality goes
/// down from 0.82 to 0.42 in steps of a tenth; then the side shrinks to three quarters, while it is
/// at least 480. The first file of at most 1,500,000 bytes is taken. A picture that is smaller than
/// 480 to begin with counts as too large, as does one that never gets small enough.
class FeedbackAttachmentService {
public:
    /// Reads the picture in a file or in a file's bytes, on any thread; nothing where it cannot be
    /// read. May throw platform::WorkCancelled.
    struct Readers {
        std::function<std::optional<raster::RasterImage>(const QString& path,
                                                         const platform::WorkControl&)>
            file;
        std::function<std::optional<raster::RasterImage>(const QByteArray& bytes,
                                                         const platform::WorkControl&)>
            bytes;
    };
    using Completion = std::function<void(FeedbackAttachmentOutcome)>;
    /// The JPEG file of an opaque picture; empty when there is none.
    using Encoder = std::function<QByteArray(const QImage& picture, double compressionFactor)>;

    explicit FeedbackAttachmentService(
        Readers readers, const platform::LatestWorkFactory& work = platform::makeThreadedLatestWork,
        Encoder encoder = encodedJpeg);
    ~FeedbackAttachmentService();
    FeedbackAttachmentService(const FeedbackAttachmentService&) = delete;
    FeedbackAttachmentService& operator=(const FeedbackAttachmentService&) = delete;

    /// Prepares the picture in a file, away from the calling thread. `completion` is called on it
    /// once, from the event loop, unless the work is cancelled or another one is begun.
    void prepare(const QUrl& url, const Completion& completion);
    /// The same for a picture that came without a file.
    void prepare(const QByteArray& bytes, const QString& sourceFilename,
                 const Completion& completion);
    /// Gives up what is under way, if anything is.
    void cancel();

    /// Prepares a picture on the spot. Throws platform::WorkCancelled when `control` was told so.
    static FeedbackAttachmentOutcome prepare(const raster::RasterImage& image,
                                             const QString& sourceFilename,
                                             const platform::WorkControl& control = {},
                                             const Encoder& encoder = encodedJpeg);

    static QByteArray encodedJpeg(const QImage& picture, double compressionFactor);

private:
    using Read = std::function<std::optional<raster::RasterImage>(const platform::WorkControl&)>;

    void start(const Read& read, const QString& sourceFilename, const Completion& completion);

    Readers m_readers;
    Encoder m_encoder;
    std::shared_ptr<platform::WorkControl> m_control;
    std::unique_ptr<platform::LatestWork> m_work;
};

/// The name under which a picture is sent: the source's without its extension, with a hyphen for
/// all but letters, digits, "-" and "_", none at the ends, and the extension "jpg".
QString attachmentFilename(const QString& sourceFilename);

} // namespace quillabrae::services
