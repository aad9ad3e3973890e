// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RecentlyUsedList.h"

#include <QDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <utility>
#include <vector>

namespace quillabrae::platform::RecentlyUsedList {
namespace {

const QString bookmarkSpace =
    QStringLiteral("http://www.freedesktop.org/standards/desktop-bookmarks");
const QString mimeSpace = QStringLiteral("http://www.freedesktop.org/standards/shared-mime-info");
const QString metadataOwner = QStringLiteral("http://freedesktop.org");

const QString modified = QStringLiteral("modified");
const QString visited = QStringLiteral("visited");

bool isSameFile(QStringView href, const QUrl& file) {
    // The same path can be written with more or fewer of its characters escaped.
    const QUrl noted(href.toString());
    return noted.isLocalFile() &&
           QDir::cleanPath(noted.toLocalFile()) == QDir::cleanPath(file.toLocalFile());
}

/// With the characters escaped that GLib escapes: to its programs other addresses are other files.
QString addressOf(const QUrl& file) {
    return QStringLiteral("file://") +
           QString::fromLatin1(QUrl::toPercentEncoding(file.toLocalFile(), "!$&'()*+,/:=@"));
}

QString timeText(const QDateTime& time) {
    return time.toUTC().toString(Qt::ISODateWithMs);
}

/// Copies a list token by token, and lets its heirs change what it says of one file.
class Copy {
public:
    Copy(const QByteArray& list, QUrl file) : m_file(std::move(file)), m_reader(list) {}
    virtual ~Copy() = default;
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    /// Nothing for a list that is not in order.
    std::optional<QByteArray> copied() {
        while (!m_reader.atEnd()) {
            m_reader.readNext();
            if (m_reader.isStartElement())
                start();
            else if (m_reader.isEndElement())
                end();
            else if (m_reader.tokenType() != QXmlStreamReader::Invalid)
                m_writer.writeCurrentToken(m_reader);
        }
        const bool isInOrder = !m_reader.hasError() && m_isList;
        return isInOrder ? std::optional(m_copy) : std::nullopt;
    }

protected:
    enum class Element { other, list, bookmark, info, metadata, applications, application };

    /// Called for each element of the file's bookmark: whether it is copied; the rest of one that
    /// is not is passed over.
    virtual bool takesStart(Element) { return true; }
    /// Called before the end of such an element, and of the list, is copied.
    virtual void beforeEnd(Element) {}
    /// What the bookmark's own element says.
    virtual QXmlStreamAttributes bookmarkAttributes() { return m_reader.attributes(); }

    const QUrl& file() const { return m_file; }
    const QXmlStreamReader& reader() const { return m_reader; }
    QXmlStreamWriter& writer() { return m_writer; }

private:
    /// What the element that begins here is, for those on the way to the file's programs.
    Element elementHere() const {
        const Element parent = m_open.empty() ? Element::other : m_open.back();
        const QStringView name = m_reader.name();
        const bool isPlain = m_reader.namespaceUri().isEmpty();
        if (m_open.empty()) return isPlain && name == u"xbel" ? Element::list : Element::other;
        const QXmlStreamAttributes attributes = m_reader.attributes();
        switch (parent) {
            case Element::list:
                return isPlain && name == u"bookmark" &&
                               isSameFile(attributes.value(QStringLiteral("href")), m_file)
                           ? Element::bookmark
                           : Element::other;
            case Element::bookmark:
                return isPlain && name == u"info" ? Element::info : Element::other;
            case Element::info:
                return isPlain && name == u"metadata" &&
                               attributes.value(QStringLiteral("owner")) == metadataOwner
                           ? Element::metadata
                           : Element::other;
            case Element::metadata:
                return isOfBookmarks(u"applications") ? Element::applications : Element::other;
            case Element::applications:
                return isOfBookmarks(u"application") ? Element::application : Element::other;
            case Element::application:
            case Element::other:
                break;
        }
        return Element::other;
    }
    bool isOfBookmarks(QStringView name) const {
        return m_reader.namespaceUri() == bookmarkSpace && m_reader.name() == name;
    }

    void start() {
        const Element element = elementHere();
        if (element == Element::list) m_isList = true;
        if (element != Element::other && !takesStart(element)) {
            m_reader.skipCurrentElement();
            return;
        }
        m_open.push_back(element);
        if (element != Element::bookmark) {
            m_writer.writeCurrentToken(m_reader);
            return;
        }
        for (const auto& declaration : m_reader.namespaceDeclarations())
            m_writer.writeNamespace(declaration.namespaceUri().toString(),
                                    declaration.prefix().toString());
        m_writer.writeStartElement(m_reader.name().toString());
        m_writer.writeAttributes(bookmarkAttributes());
    }
    void end() {
        if (m_open.back() != Element::other) beforeEnd(m_open.back());
        m_open.pop_back();
        m_writer.writeCurrentToken(m_reader);
    }

    QUrl m_file;
    QByteArray m_copy;
    QXmlStreamReader m_reader;
    QXmlStreamWriter m_writer{&m_copy};
    std::vector<Element> m_open;
    bool m_isList = false;
};

class Addition final : public Copy {
public:
    Addition(const QByteArray& list, const Use& use) : Copy(list, use.file), m_use(use) {}

private:
    bool takesStart(Element element) override {
        if (element != Element::application) return true;
        const QXmlStreamAttributes attributes = reader().attributes();
        if (attributes.value(QStringLiteral("name")) != m_use.program) return true;
        m_count += attributes.value(QStringLiteral("count")).toInt();
        return false;
    }
    QXmlStreamAttributes bookmarkAttributes() override {
        QXmlStreamAttributes attributes;
        for (const QXmlStreamAttribute& attribute : reader().attributes()) {
            const QStringView name = attribute.qualifiedName();
            if (name != modified && name != visited) attributes.append(attribute);
        }
        attributes.append(modified, timeText(m_use.time));
        attributes.append(visited, timeText(m_use.time));
        return attributes;
    }
    /// What was missing until here is written whole.
    void beforeEnd(Element element) override {
        if (m_isWritten) return;
        switch (element) {
            case Element::list:
                writeBookmark();
                break;
            case Element::bookmark:
                writeInfo();
                break;
            case Element::info:
                writeMetadata();
                break;
            case Element::metadata:
                writeApplications();
                break;
            case Element::applications:
                writeApplication();
                break;
            case Element::application:
            case Element::other:
                return;
        }
        m_isWritten = true;
    }

    void writeBookmark() {
        writer().writeCharacters(QStringLiteral("  "));
        writer().writeStartElement(QStringLiteral("bookmark"));
        const QString time = timeText(m_use.time);
        writer().writeAttribute(QStringLiteral("href"), addressOf(m_use.file));
        for (const QString& name : {QStringLiteral("added"), modified, visited})
            writer().writeAttribute(name, time);
        writeInfo();
        writer().writeEndElement();
        writer().writeCharacters(QStringLiteral("\n"));
    }
    void writeInfo() {
        writer().writeStartElement(QStringLiteral("info"));
        writeMetadata();
        writer().writeEndElement();
    }
    void writeMetadata() {
        writer().writeStartElement(QStringLiteral("metadata"));
        writer().writeAttribute(QStringLiteral("owner"), metadataOwner);
        writer().writeEmptyElement(mimeSpace, QStringLiteral("mime-type"));
        writer().writeAttribute(QStringLiteral("type"), m_use.mimeType);
        writeApplications();
        writer().writeEndElement();
    }
    void writeApplications() {
        writer().writeStartElement(bookmarkSpace, QStringLiteral("applications"));
        writeApplication();
        writer().writeEndElement();
    }
    void writeApplication() {
        writer().writeEmptyElement(bookmarkSpace, QStringLiteral("application"));
        writer().writeAttribute(QStringLiteral("name"), m_use.program);
        // The command is quoted as for a shell.
        writer().writeAttribute(QStringLiteral("exec"), u'\'' + m_use.command + u'\'');
        writer().writeAttribute(modified, timeText(m_use.time));
        writer().writeAttribute(QStringLiteral("count"), QString::number(m_count + 1));
    }

    const Use& m_use;
    int m_count = 0;
    bool m_isWritten = false;
};

/// Looks at who has used a file, and copies in vain.
class Users final : public Copy {
public:
    using Copy::Copy;

    QStringList names;

private:
    bool takesStart(Element element) override {
        if (element == Element::application)
            names << reader().attributes().value(QStringLiteral("name")).toString();
        return true;
    }
};

class Removal final : public Copy {
public:
    enum class What { program, bookmark };

    Removal(const QByteArray& list, const QUrl& file, QString program, What what)
        : Copy(list, file), m_program(std::move(program)), m_what(what) {}

private:
    bool takesStart(Element element) override {
        if (element == Element::bookmark) return m_what != What::bookmark;
        return element != Element::application ||
               reader().attributes().value(QStringLiteral("name")) != m_program;
    }

    QString m_program;
    What m_what;
};

QByteArray emptyList() {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\" xmlns:bookmark=\"" +
           bookmarkSpace.toLatin1() + "\" xmlns:mime=\"" + mimeSpace.toLatin1() + "\">\n</xbel>\n";
}

} // namespace

std::optional<QByteArray> withUse(const QByteArray& list, const Use& use) {
    return Addition(list.isEmpty() ? emptyList() : list, use).copied();
}

std::optional<QByteArray> withoutUses(const QByteArray& list, const QUrl& file,
                                      const QString& program) {
    Users users(list, file);
    if (!users.copied() || !users.names.contains(program)) return std::nullopt;
    const bool isShared = users.names.count(program) < users.names.size();
    return Removal(list, file, program, isShared ? Removal::What::program : Removal::What::bookmark)
        .copied();
}

} // namespace quillabrae::platform::RecentlyUsedList
