// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MimeSource.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

namespace quillabrae::store {

/// What a drop brings, taken from the drag while that is still there. At most one of the three has
/// something in it.
struct DroppedContents {
    QByteArray svg;
    /// A picture's file in memory, of any format.
    QByteArray picture;
    QList<QUrl> files;

    bool isEmpty() const { return svg.isEmpty() && picture.isEmpty() && files.isEmpty(); }
    friend bool operator==(const DroppedContents&, const DroppedContents&) = default;
};

/// Whether a window shows that it would take the drag, as far as its types tell.
bool isDropWelcome(const platform::MimeSource& source);

/// An SVG document goes before a picture, a picture before files: a browser drags an image along
/// with the address it came from.
DroppedContents droppedContents(const platform::MimeSource& source);

} // namespace quillabrae::store
