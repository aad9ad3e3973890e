// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"
#include "persistence/SaveFormat.h"
#include "raster/RasterImage.h"

#include <QSize>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iosfwd>
#include <span>

/// Pictures of every kind in every format, written by us and read back by programs that are not
/// ours.
namespace quillabrae::persistence {

enum class Contents { opaque, translucent, hidden, halfOpacity, empty };

struct Picture {
    const char* name = nullptr;
    QSize size;
    Contents contents = Contents::opaque;
};

struct Format {
    SaveFormat format = SaveFormat::png;
    /// The shell command that makes $2, a PNG, a PPM or for our PNGs raw RGBA, of $1. It fails for
    /// a file that is not in order.
    const char* decode = nullptr;
    /// In decibels; above what no file can have means every pixel is exact.
    double leastPsnr = 0.0;
    /// The longest side of a picture that the command reads, and the one that reads longer ones,
    /// where the format has them.
    int longestSide = 65535;
    const char* decodeLonger = nullptr;
};

void PrintTo(const Format& format, std::ostream* stream);
void PrintTo(const Picture& picture, std::ostream* stream);

std::span<const Format> allFormats();
const Format& formatNamed(SaveFormat format);

/// One layer of smooth colours.
model::PaintProject projectOf(const Picture& picture);

class FormatRoundTrip : public testing::Test {
protected:
    QString write(const model::PaintProject& project, SaveFormat format) const;
    /// Writes the project and compares what others read with what it should look like.
    void expectRoundTrip(const model::PaintProject& project, const Format& format) const;
    QStringList names() const;

    QTemporaryDir folder;

private:
    void run(const char* command, const QString& path, const QString& output) const;
    raster::RasterImage decoded(const QString& path, const Format& format, QSize size) const;
};

} // namespace quillabrae::persistence
