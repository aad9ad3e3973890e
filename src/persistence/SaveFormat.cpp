// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/SaveFormat.h"

#include "model/Vocabulary.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace quillabrae::persistence {
namespace {

struct Row {
    SaveFormat value;
    const char* rawText;
    const char* title;
    const char* fileExtension;
    /// Separated by spaces.
    const char* recognisedExtensions;
};

constexpr std::array<Row, saveFormatCount> table{{
    {SaveFormat::project, "project", QT_TRANSLATE_NOOP("SaveFormat", "Project (.quillabrae)"),
     "quillabrae", "quillabrae"},
    {SaveFormat::png, "png", QT_TRANSLATE_NOOP("SaveFormat", "PNG Image (.png)"), "png", "png"},
    {SaveFormat::jpeg, "jpeg", QT_TRANSLATE_NOOP("SaveFormat", "JPEG Image (.jpg/.jpeg)"), "jpg",
     "jpg jpeg jpe"},
    {SaveFormat::heic, "heic", QT_TRANSLATE_NOOP("SaveFormat", "HEIC Image (.heic)"), "heic",
     "heic"},
    {SaveFormat::webp, "webp", QT_TRANSLATE_NOOP("SaveFormat", "WebP Image (.webp)"), "webp",
     "webp"},
    {SaveFormat::tiff, "tiff", QT_TRANSLATE_NOOP("SaveFormat", "TIFF Image (.tiff)"), "tiff",
     "tif tiff"},
    {SaveFormat::svg, "svg", QT_TRANSLATE_NOOP("SaveFormat", "SVG Image (.svg)"), "svg", "svg"},
    {SaveFormat::bmp, "bmp", QT_TRANSLATE_NOOP("SaveFormat", "Bitmap Image (.bmp)"), "bmp", "bmp"},
    {SaveFormat::gif, "gif", QT_TRANSLATE_NOOP("SaveFormat", "GIF Image (.gif)"), "gif", "gif"},
    {SaveFormat::jpeg2000, "jpeg2000", QT_TRANSLATE_NOOP("SaveFormat", "JPEG 2000 Image (.jp2)"),
     "jp2", "jp2 j2k jpf jpx jpm mj2"},
}};

const Row& row(SaveFormat format) {
    return model::vocabularyRow(std::span<const Row>(table), format);
}

} // namespace

std::array<SaveFormat, saveFormatCount> allSaveFormats() {
    std::array<SaveFormat, saveFormatCount> all{};
    std::ranges::transform(table, all.begin(), &Row::value);
    return all;
}

QString rawText(SaveFormat format) {
    return QString::fromLatin1(row(format).rawText);
}

std::optional<SaveFormat> saveFormatFromRawText(QStringView rawText) {
    return model::caseFromRawText(std::span<const Row>(table), rawText);
}

QString title(SaveFormat format) {
    return QCoreApplication::translate("SaveFormat", row(format).title);
}

QString fileExtension(SaveFormat format) {
    return QString::fromLatin1(row(format).fileExtension);
}

QStringList recognisedExtensions(SaveFormat format) {
    return QString::fromLatin1(row(format).recognisedExtensions).split(u' ');
}

std::optional<SaveFormat> saveFormatOf(const QUrl& fileURL) {
    const QString name = fileURL.adjusted(QUrl::StripTrailingSlash).fileName();
    const QString extension = QFileInfo(name).suffix().toLower();
    const auto found = std::ranges::find_if(table, [&](const Row& candidate) {
        return recognisedExtensions(candidate.value).contains(extension);
    });
    if (extension.isEmpty() || found == table.end()) return std::nullopt;
    return found->value;
}

} // namespace quillabrae::persistence
