// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/SaveFormat.h"

#include "model/Vocabulary.h"

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
    {SaveFormat::project, "project", "Project (.quillabrae)", "quillabrae", "quillabrae"},
    {SaveFormat::png, "png", "PNG Image (.png)", "png", "png"},
    {SaveFormat::jpeg, "jpeg", "JPEG Image (.jpg/.jpeg)", "jpg", "jpg jpeg jpe"},
    {SaveFormat::heic, "heic", "HEIC Image (.heic)", "heic", "heic"},
    {SaveFormat::webp, "webp", "WebP Image (.webp)", "webp", "webp"},
    {SaveFormat::tiff, "tiff", "TIFF Image (.tiff)", "tiff", "tif tiff"},
    {SaveFormat::svg, "svg", "SVG Image (.svg)", "svg", "svg"},
    {SaveFormat::bmp, "bmp", "Bitmap Image (.bmp)", "bmp", "bmp"},
    {SaveFormat::gif, "gif", "GIF Image (.gif)", "gif", "gif"},
    {SaveFormat::jpeg2000, "jpeg2000", "JPEG 2000 Image (.jp2)", "jp2", "jp2 j2k jpf jpx jpm mj2"},
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
    return QString::fromLatin1(row(format).title);
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
