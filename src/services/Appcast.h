// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/ReleaseVersion.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace quillabrae::services {

/// One version that a feed offers.
struct AppcastItem {
    ReleaseVersion version;
    /// The version as people read it.
    QString displayVersionString;
    /// The package: where it is, over HTTPS, and its exact length in bytes.
    QUrl url;
    qint64 length = 0;
    /// The Ed25519 signature of the package's bytes: 64 bytes.
    QByteArray signature;
};

/// A longer feed is refused.
constexpr qint64 maximumFeedBytes = qint64{1024} * 1024;
/// A larger package is passed over.
constexpr qint64 maximumPackageBytes = qint64{256} * 1024 * 1024;

/// The items of an RSS feed that this program could be updated to, in the feed's order. Nothing for
/// what is no such feed; an item that lacks something is passed over.
///
/// An item has an `enclosure` with `url`, `length` and `edSignature` (base64), and the version, as
/// `version` with `shortVersionString` for people, on the enclosure or as elements of the item.
/// Where those words come from (which XML namespace) does not matter. An enclosure whose `os` is
/// given and not "linux" is somebody else's. A feed with a document type is refused, so that there
/// are no entities but XML's own.
std::optional<std::vector<AppcastItem>> readAppcast(const QByteArray& feed);

/// The newest of the items, where that is newer than `current`; the first of several alike.
std::optional<AppcastItem> newestUpdate(const std::vector<AppcastItem>& items,
                                        const ReleaseVersion& current);

} // namespace quillabrae::services
