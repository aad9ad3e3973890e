// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"
#include "platform/Pasteboard.h"
#include "platform/WorkRunner.h"
#include "raster/RasterImage.h"

#include <QDateTime>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace quillabrae::store {

/// Where on the canvas copied pixels came from, in canvas pixels: goes along with them under
/// `clipboardMetadataType` as a JSON object of these two keys.
struct ClipboardImageMetadata {
    double sourceX = 0.0;
    double sourceY = 0.0;

    friend bool operator==(const ClipboardImageMetadata&, const ClipboardImageMetadata&) = default;
};

inline const QString clipboardMetadataType =
    QStringLiteral("com.orvik.Quillabrae.clipboard-metadata");

/// Nothing when the contents have no such record or one that cannot be read.
std::optional<ClipboardImageMetadata> clipboardMetadata(const platform::MimeSource& source);

/// Pictures to and from the clipboard. Remembers its own last copy, so that what was copied here is
/// pasted here with its very bytes and nothing is decoded.
class ClipboardImageService {
public:
    /// Copied pictures are put into `folder` as files too, for programs that paste files alone.
    /// What others have copied is decoded as `work`.
    ClipboardImageService(platform::Pasteboard& pasteboard, QString folder,
                          platform::WorkRunner& work);

    /// Copies a picture under a name for its file. `sourceOrigin` is where its top left was on the
    /// canvas. False when there is no picture or the clipboard did not take it.
    bool writePNGImage(const raster::RasterImage& image, const QString& suggestedName,
                       std::optional<QPointF> sourceOrigin);
    /// A new file of these bytes in the folder; nothing when it cannot be written.
    std::optional<QUrl> writeTemporaryPNGFile(const QByteArray& data,
                                              const QString& suggestedName) const;
    /// Removes the files of copies that are older than a day.
    void removeOldFiles(const QDateTime& now) const;

    /// The picture on the clipboard, drawings apart: the program's own last copy while nobody has
    /// copied since, else the first form that can be read. Throws platform::WorkCancelled when the
    /// user does not wait for it.
    std::optional<model::PastedImage> pastedImage();
    /// Its size in pixels; nothing when the user does not wait for it.
    std::optional<QSizeF> pastedImageSize() const;
    /// The SVG document on the clipboard, which may be text; empty when there is none.
    QByteArray svgData() const;
    /// The files that were copied in a file manager.
    QList<QUrl> copiedFiles() const { return platform::localFiles(m_pasteboard); }

private:
    struct InternalClipboardImage {
        int changeCount = 0;
        model::PastedImage image;
    };

    bool isOwnCopy() const;
    /// Hands the picture on, on any thread; nothing when there is none.
    void readPicture(const std::function<void(const raster::RasterImage&)>& use) const;

    platform::Pasteboard& m_pasteboard;
    QString m_folder;
    platform::WorkRunner& m_work;
    std::optional<InternalClipboardImage> m_internalClipboard;
};

} // namespace quillabrae::store
