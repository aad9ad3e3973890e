// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ClipboardImageService.h"

#include "persistence/ImageLoader.h"
#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"
#include "raster/DecodeCache.h"
#include "store/MimePictures.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <cmath>
#include <utility>

namespace quillabrae::store {

namespace MimeTypes = platform::MimeTypes;
using platform::PasteboardItem;

namespace {

/// The context of this file's texts, for translators.
struct ClipboardTexts {
    Q_DECLARE_TR_FUNCTIONS(ClipboardTexts)
};

/// In bytes; two numbers need far less.
constexpr qsizetype greatestMetadata = 4096;

const QString sourceXKey = QStringLiteral("sourceX");
const QString sourceYKey = QStringLiteral("sourceY");

QByteArray encoded(const ClipboardImageMetadata& metadata) {
    const QJsonObject form{{sourceXKey, metadata.sourceX}, {sourceYKey, metadata.sourceY}};
    return QJsonDocument(form).toJson(QJsonDocument::Compact);
}

/// The same pixels as a lossless TIFF; empty when they cannot be decoded.
QByteArray tiffOf(const model::PngBytes& png) {
    const raster::RasterImage image = raster::decodedImage(png);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "tiff");
    constexpr int lzw = 1;
    writer.setCompression(lzw);
    if (image.isNull() || !writer.write(image.toQImage())) return {};
    return buffer.data();
}

/// In bytes; file systems end names at 255, and the id and the suffixes need some of them.
constexpr qsizetype greatestNameLength = 200;

QString cleanedName(const QString& suggestedName) {
    QString name = suggestedName;
    name.replace(u'/', u'-').replace(u':', u'-');
    name = name.trimmed();
    while (name.toUtf8().size() > greatestNameLength) name.chop(1);
    return name.isEmpty() ? QStringLiteral("Selection") : name;
}

} // namespace

std::optional<ClipboardImageMetadata> clipboardMetadata(const platform::MimeSource& source) {
    if (!source.types().contains(clipboardMetadataType)) return std::nullopt;
    const QByteArray json = source.data(clipboardMetadataType);
    if (json.size() > greatestMetadata) return std::nullopt;
    const QJsonObject form = QJsonDocument::fromJson(json).object();
    const QJsonValue x = form.value(sourceXKey);
    const QJsonValue y = form.value(sourceYKey);
    if (!x.isDouble() || !y.isDouble()) return std::nullopt;
    if (!std::isfinite(x.toDouble()) || !std::isfinite(y.toDouble())) return std::nullopt;
    return ClipboardImageMetadata{x.toDouble(), y.toDouble()};
}

ClipboardImageService::ClipboardImageService(platform::Pasteboard& pasteboard, QString folder,
                                             platform::WorkRunner& work)
    : m_pasteboard(pasteboard), m_folder(std::move(folder)), m_work(work) {}

bool ClipboardImageService::writePNGImage(const raster::RasterImage& image,
                                          const QString& suggestedName,
                                          std::optional<QPointF> sourceOrigin) {
    auto copy = pastedImageOf(image);
    if (!copy) return false;
    const model::PngBytes png = copy->pngData;
    std::vector<PasteboardItem> items{
        {MimeTypes::png, [png] { return png.toByteArray(); }},
        {MimeTypes::tiff, [png] { return tiffOf(png); }},
    };
    const auto add = [&items](const QString& type, const QByteArray& bytes) {
        items.push_back({type, [bytes] { return bytes; }});
    };
    if (sourceOrigin) {
        copy->sourceX = sourceOrigin->x();
        copy->sourceY = sourceOrigin->y();
        add(clipboardMetadataType, encoded({sourceOrigin->x(), sourceOrigin->y()}));
    }
    if (const auto file = writeTemporaryPNGFile(png.toByteArray(), suggestedName)) {
        add(MimeTypes::uriList, platform::uriListOf(*file));
        add(MimeTypes::copiedFiles, platform::copiedFilesOf(*file));
    }
    m_internalClipboard.reset();
    if (!m_pasteboard.write(std::move(items))) return false;
    m_internalClipboard = {m_pasteboard.changeCount(), *std::move(copy)};
    return true;
}

std::optional<QUrl> ClipboardImageService::writeTemporaryPNGFile(
    const QByteArray& data, const QString& suggestedName) const {
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QString name = QStringLiteral("%1-%2.png").arg(cleanedName(suggestedName), id);
    try {
        platform::makePrivateFolder(m_folder);
        platform::placePrivateFile(m_folder + u'/' + name, data, platform::Reaching::later);
    } catch (const platform::FileOperationError&) {
        return std::nullopt;
    }
    return QUrl::fromLocalFile(QDir(m_folder).filePath(name));
}

void ClipboardImageService::removeOldFiles(const QDateTime& now) const {
    const QDir folder(m_folder);
    const QFileInfoList files =
        folder.entryInfoList({QStringLiteral("*.png"), u'*' + platform::unfinishedSuffix},
                             QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo& file : files) {
        if (file.lastModified() < now.addDays(-1)) QFile::remove(file.filePath());
    }
}

bool ClipboardImageService::isOwnCopy() const {
    return m_internalClipboard && m_internalClipboard->changeCount == m_pasteboard.changeCount();
}

void ClipboardImageService::readPicture(
    const std::function<void(const raster::RasterImage&)>& use) const {
    for (const QString& type : pictureTypes(m_pasteboard)) {
        const QByteArray file = m_pasteboard.data(type);
        bool isRead = false;
        m_work.run(ClipboardTexts::tr("Reading the clipboard"),
                   [&](const platform::WorkControl& control) {
                       const auto image = persistence::loadImage(file, control);
                       control.stopIfCancelled();
                       isRead = image.has_value();
                       if (isRead) use(*image);
                   });
        if (isRead) return;
    }
}

std::optional<model::PastedImage> ClipboardImageService::pastedImage() {
    if (isOwnCopy()) return m_internalClipboard->image;
    m_internalClipboard.reset();
    // Before anything takes time, in which another program may copy.
    const auto metadata = clipboardMetadata(m_pasteboard);
    std::optional<model::PastedImage> image;
    readPicture([&image](const raster::RasterImage& picture) { image = pastedImageOf(picture); });
    if (image && metadata) {
        image->sourceX = metadata->sourceX;
        image->sourceY = metadata->sourceY;
    }
    return image;
}

std::optional<QSizeF> ClipboardImageService::pastedImageSize() const {
    if (isOwnCopy())
        return QSizeF(m_internalClipboard->image.width, m_internalClipboard->image.height);
    std::optional<QSizeF> size;
    try {
        readPicture([&size](const raster::RasterImage& picture) {
            size = QSizeF(picture.width(), picture.height());
        });
    } catch (const platform::WorkCancelled&) {
        return std::nullopt;
    }
    return size;
}

QByteArray ClipboardImageService::svgData() const {
    return isOwnCopy() ? QByteArray() : svgIn(m_pasteboard);
}

} // namespace quillabrae::store
