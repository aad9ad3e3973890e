// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/DroppedContents.h"

#include "store/MimePictures.h"

#include <algorithm>

namespace quillabrae::store {
namespace {

/// The bytes of WebP where it is on offer, else of the first picture's type.
QByteArray pictureIn(const platform::MimeSource& source) {
    const QStringList types = pictureTypes(source);
    if (types.isEmpty()) return {};
    const bool hasWebP = types.contains(platform::MimeTypes::webP);
    return source.data(hasWebP ? platform::MimeTypes::webP : types.first());
}

} // namespace

bool isDropWelcome(const platform::MimeSource& source) {
    const QStringList types = source.types();
    return std::ranges::any_of(types, [](const QString& type) {
        return type == platform::MimeTypes::uriList || type.startsWith(platform::MimeTypes::text) ||
               type.startsWith(QLatin1StringView("image/"));
    });
}

DroppedContents droppedContents(const platform::MimeSource& source) {
    DroppedContents contents;
    contents.svg = svgIn(source);
    if (contents.svg.isEmpty()) contents.picture = pictureIn(source);
    if (contents.isEmpty()) contents.files = platform::localFiles(source);
    return contents;
}

} // namespace quillabrae::store
