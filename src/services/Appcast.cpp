// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/Appcast.h"

#include "services/UpdateSignature.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace quillabrae::services {
namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t mostItems = 1000;
constexpr qsizetype longestDisplayVersion = 64;

/// What an item says, before anybody asks whether that makes sense.
struct Texts {
    QString version;
    QString shortVersionString;
    QString url;
    QString length;
    QString signature;
    QString os;
};

/// An attribute by its name, whatever namespace that is in.
QString attribute(const QXmlStreamAttributes& attributes, QLatin1StringView name) {
    for (const QXmlStreamAttribute& candidate : attributes)
        if (candidate.name() == name) return candidate.value().toString();
    return {};
}

void readEnclosure(const QXmlStreamAttributes& attributes, Texts& texts) {
    texts.url = attribute(attributes, "url"_L1);
    texts.length = attribute(attributes, "length"_L1);
    texts.signature = attribute(attributes, "edSignature"_L1);
    texts.os = attribute(attributes, "os"_L1);
    if (const QString version = attribute(attributes, "version"_L1); !version.isEmpty())
        texts.version = version;
    if (const QString version = attribute(attributes, "shortVersionString"_L1); !version.isEmpty())
        texts.shortVersionString = version;
}

Texts readItem(QXmlStreamReader& xml) {
    Texts texts;
    while (xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (name == "enclosure"_L1) {
            readEnclosure(xml.attributes(), texts);
            xml.skipCurrentElement();
        } else if (name == "version"_L1) {
            texts.version = xml.readElementText(QXmlStreamReader::SkipChildElements);
        } else if (name == "shortVersionString"_L1) {
            texts.shortVersionString = xml.readElementText(QXmlStreamReader::SkipChildElements);
        } else {
            xml.skipCurrentElement();
        }
    }
    return texts;
}

bool isPlainText(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isPrint(); });
}

std::optional<AppcastItem> itemFrom(const Texts& texts) {
    const QString versionText = texts.version.trimmed();
    const auto version = ReleaseVersion::from(versionText);
    const auto signature = decodedBase64(texts.signature, updateSignatureBytes);
    const QUrl url(texts.url.trimmed(), QUrl::StrictMode);
    bool isNumber = false;
    const qint64 length = texts.length.trimmed().toLongLong(&isNumber);
    const bool isPackage = url.isValid() && url.scheme() == "https"_L1 && !url.host().isEmpty() &&
                           isNumber && length > 0 && length <= maximumPackageBytes;
    const bool isOurs = texts.os.isEmpty() || texts.os == "linux"_L1;
    if (!version || !signature || !isPackage || !isOurs) return std::nullopt;
    const QString shown = texts.shortVersionString.trimmed();
    const bool isShowable =
        !shown.isEmpty() && shown.size() <= longestDisplayVersion && isPlainText(shown);
    return AppcastItem{*version, isShowable ? shown : versionText, url, length, *signature};
}

void readChannel(QXmlStreamReader& xml, std::vector<AppcastItem>& items) {
    while (xml.readNextStartElement()) {
        if (xml.name() != "item"_L1 || items.size() >= mostItems) {
            xml.skipCurrentElement();
            continue;
        }
        if (auto item = itemFrom(readItem(xml))) items.push_back(*std::move(item));
    }
}

/// Whether the document begins with an `rss` element and without a document type.
bool readStart(QXmlStreamReader& xml) {
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
            case QXmlStreamReader::DTD:
                return false;
            case QXmlStreamReader::StartElement:
                return xml.name() == "rss"_L1;
            default:
                break;
        }
    }
    return false;
}

} // namespace

std::optional<std::vector<AppcastItem>> readAppcast(const QByteArray& feed) {
    if (feed.size() > maximumFeedBytes) return std::nullopt;
    QXmlStreamReader xml(feed);
    if (!readStart(xml)) return std::nullopt;
    std::vector<AppcastItem> items;
    while (xml.readNextStartElement()) {
        if (xml.name() == "channel"_L1)
            readChannel(xml, items);
        else
            xml.skipCurrentElement();
    }
    while (!xml.atEnd()) xml.readNext();
    if (xml.hasError()) return std::nullopt;
    return items;
}

std::optional<AppcastItem> newestUpdate(const std::vector<AppcastItem>& items,
                                        const ReleaseVersion& current) {
    const AppcastItem* newest = nullptr;
    for (const AppcastItem& item : items)
        if (item.version > current && (!newest || item.version > newest->version)) newest = &item;
    return newest ? std::optional(*newest) : std::nullopt;
}

} // namespace quillabrae::services
