// SPDX-License-Identifier: GPL-3.0-or-later
// WebP through the program `cwebp`, for systems whose Qt does not write it.
#include "persistence/FileError.h"
#include "persistence/ImageWriters.h"
#include "platform/PrivateFile.h"
#include "raster/PngCodec.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QUuid>

namespace quillabrae::persistence {
namespace {

/// The context of this file's texts, for translators.
struct WebPEncoderTexts {
    Q_DECLARE_TR_FUNCTIONS(WebPEncoderTexts)
};

QString encodingFailed() {
    return WebPEncoderTexts::tr("The image could not be encoded.");
}

/// A file name that nobody else uses, and no file of that name at the end.
class TemporaryFile {
public:
    TemporaryFile(const QString& folder, QLatin1StringView extension)
        : m_path(folder + QStringLiteral("/Quillabrae-") +
                 QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + extension) {}
    ~TemporaryFile() { QFile::remove(m_path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const QString& path() const { return m_path; }

private:
    QString m_path;
};

void runEncoder(const QString& encoder, const QString& input, const QString& output,
                const platform::WorkControl& control) {
    constexpr int lookEveryMilliseconds = 50;
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(encoder, {QStringLiteral("-quiet"), QStringLiteral("-q"), QStringLiteral("92"),
                            input, QStringLiteral("-o"), output});
    if (!process.waitForStarted(-1)) throw FileError(process.errorString());
    while (!process.waitForFinished(lookEveryMilliseconds) &&
           process.state() != QProcess::NotRunning) {
        if (!control.isCancelled()) continue;
        process.kill();
        process.waitForFinished(-1);
        control.stopIfCancelled();
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw FileError(encodingFailed());
}

} // namespace

QString webPEncoder() {
    for (const char* candidate :
         {"/opt/homebrew/bin/cwebp", "/usr/local/bin/cwebp", "/usr/bin/cwebp"}) {
        const QString path = QString::fromLatin1(candidate);
        if (const QFileInfo program(path); program.isFile() && program.isExecutable()) return path;
    }
    return {};
}

void writeWebPWithEncoder(const raster::RasterImage& picture, platform::DurableFile& file,
                          const QString& encoder, const QString& temporaryFolder,
                          const platform::WorkControl& control) {
    if (encoder.isEmpty())
        throw FileError(
            WebPEncoderTexts::tr("WebP export requires macOS ImageIO WebP encoding support or "
                                 "the cwebp command-line encoder."));
    const TemporaryFile input(temporaryFolder, QLatin1StringView(".png"));
    const TemporaryFile output(temporaryFolder, QLatin1StringView(".webp"));
    const model::PngBytes png = raster::encodePng(picture);
    if (png.isEmpty()) throw FileError(encodingFailed());
    platform::createPrivateFile(input.path(), png.toByteArray(), platform::Reaching::later);
    // The encoder writes into what is there, so that what it writes is private too.
    platform::createPrivateFile(output.path(), QByteArray(), platform::Reaching::later);
    runEncoder(encoder, input.path(), output.path(), control);
    QFile encoded(output.path());
    if (!encoded.open(QIODevice::ReadOnly) || encoded.size() == 0)
        throw FileError(encodingFailed());
    file.write(encoded.readAll());
}

} // namespace quillabrae::persistence
