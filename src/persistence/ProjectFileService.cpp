// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ProjectFileService.h"

#include "model/RecordCoding.h"
#include "persistence/FileError.h"
#include "persistence/FileSink.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/Staging.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/Memory.h"
#include "raster/PngCodec.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <new>

namespace quillabrae::persistence::ProjectFileService {

using platform::FileOperationError;
using platform::FileOperations;
using platform::WorkControl;

namespace {

/// The context of this file's texts, for translators.
struct ProjectFileTexts {
    Q_DECLARE_TR_FUNCTIONS(ProjectFileTexts)
};

const QString projectFileName = QStringLiteral("/project.json");
const QString previewFolderName = QStringLiteral("/QuickLook");
const QString thumbnailName = QStringLiteral("/QuickLook/Thumbnail.png");
const QString previewName = QStringLiteral("/QuickLook/Preview.pdf");

QString localPath(const QUrl& url) {
    return url.isLocalFile() ? QDir::cleanPath(url.toLocalFile()) : QString();
}

void writeFile(FileOperations& operations, const QString& path, std::span<const char> bytes) {
    const auto file = operations.createFile(path);
    file->write(bytes);
    file->finish();
}

void writeProjectFile(FileOperations& operations, const QString& path,
                      const model::PaintProject& project) {
    const auto file = operations.createFile(path);
    FileSink sink(*file);
    model::encodeTo(sink, project);
    file->finish();
}

/// Whether there is a thumbnail among them. A preview that cannot be made is left out.
bool writePreviews(FileOperations& operations, const QString& package,
                   const model::PaintProject& project, const WorkControl& control) {
    const raster::RasterImage picture = ProjectImageExportService::render(
        project, ProjectImageExportService::Background::white, control);
    if (picture.isNull()) return false;
    const QByteArray thumbnail = raster::encodePng(fileIconImage(picture)).toByteArray();
    if (!thumbnail.isEmpty()) writeFile(operations, package + thumbnailName, thumbnail);
    control.stopIfCancelled();
    const QByteArray preview = previewPDFData(picture);
    if (!preview.isEmpty()) writeFile(operations, package + previewName, preview);
    return !thumbnail.isEmpty();
}

/// Whether the package has a thumbnail.
bool writeProjectPackage(FileOperations& operations, const model::PaintProject& project,
                         const QString& path, const WorkControl& control) {
    Staging staging(operations, path);
    operations.makePath(staging.path() + previewFolderName);
    writeProjectFile(operations, staging.path() + projectFileName, project);
    control.stopIfCancelled();
    const bool hasThumbnail = writePreviews(operations, staging.path(), project, control);
    operations.syncFolder(staging.path() + previewFolderName);
    operations.syncFolder(staging.path());
    control.stopIfCancelled();
    staging.commit();
    return hasThumbnail;
}

/// The bytes of a document, with room after them for the parser.
QByteArray contentsOf(const QString& path) {
    QFile file(path);
    const QFileInfo information(path);
    if (information.exists() && !information.isFile())
        throw FileError::notRead(path, ProjectFileTexts::tr("It is not a file"));
    if (!file.open(QIODevice::ReadOnly)) throw FileError::notRead(path, file.errorString());
    // The text and the pictures in it are in memory together for a moment.
    constexpr qint64 memoryForEachByte = 2;
    if (file.size() > platform::availableMemory() / memoryForEachByte)
        throw FileError::notRead(path, ProjectFileTexts::tr("It is too large for this computer"));
    QByteArray contents;
    contents.reserve(file.size() + static_cast<qsizetype>(model::JsonReader::padding));
    contents.resize(file.size());
    const qint64 count = file.read(contents.data(), contents.size());
    if (count < 0) throw FileError::notRead(path, file.errorString());
    contents.resize(count);
    return contents;
}

} // namespace

void save(const model::PaintProject& project, const QUrl& url, const platform::Clock& clock,
          platform::FileIcons& icons, FileOperations& operations, const WorkControl& control) {
    const QString path = localPath(url);
    if (path.isEmpty())
        throw FileError::notWritten(url.toDisplayString(),
                                    ProjectFileTexts::tr("It is not a local file"));
    model::PaintProject written = project;
    written.fileURL.reset();
    written.lastModified = clock.now();
    try {
        if (writeProjectPackage(operations, written, path, control))
            icons.setIcon(path, path + thumbnailName);
    } catch (const FileOperationError& error) {
        throw FileError::notWritten(path, error.description());
    } catch (const model::JsonError& error) {
        throw FileError::notWritten(path, error.description());
    } catch (const std::bad_alloc&) {
        throw FileError::notWritten(path, ProjectFileTexts::tr("There is not enough memory"));
    }
}

model::PaintProject read(const QUrl& url) {
    const QString path = localPath(url);
    if (path.isEmpty())
        throw FileError::notRead(url.toDisplayString(),
                                 ProjectFileTexts::tr("It is not a local file"));
    const QString file = QFileInfo(path).isDir() ? path + projectFileName : path;
    try {
        auto project = model::decodedJson<model::PaintProject>(contentsOf(file));
        project.fileURL.reset();
        return project;
    } catch (const model::JsonError& error) {
        throw FileError::notRead(path, error.description());
    } catch (const std::bad_alloc&) {
        throw FileError::notRead(path, ProjectFileTexts::tr("There is not enough memory"));
    }
}

} // namespace quillabrae::persistence::ProjectFileService
