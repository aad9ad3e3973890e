// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <array>
#include <optional>

namespace quillabrae::persistence {

/// What a project can be saved as, in the order of the save dialog's list.
enum class SaveFormat { project, png, jpeg, heic, webp, tiff, svg, bmp, gif, jpeg2000 };

constexpr std::size_t saveFormatCount = 10;
std::array<SaveFormat, saveFormatCount> allSaveFormats();

QString rawText(SaveFormat format);
std::optional<SaveFormat> saveFormatFromRawText(QStringView rawText);
QString title(SaveFormat format);
/// The extension that a saved file gets, without the dot.
QString fileExtension(SaveFormat format);
/// Every extension, in lower case, that stands for the format.
QStringList recognisedExtensions(SaveFormat format);

/// The format that the extension of `fileURL` stands for, in any letter case.
std::optional<SaveFormat> saveFormatOf(const QUrl& fileURL);

/// Where to save, and as what.
struct SaveDestination {
    QUrl url;
    SaveFormat format = SaveFormat::project;

    friend bool operator==(const SaveDestination&, const SaveDestination&) = default;
};

} // namespace quillabrae::persistence
