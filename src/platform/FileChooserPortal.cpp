// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileChooserPortal.h"

#include "platform/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QGuiApplication>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QUuid>
#include <QWindow>

#include <algorithm>

namespace quillabrae::platform {

/// As the portal wants them: a title with pairs of a kind and a pattern, of which kind 0 is a glob.
struct PortalPattern {
    uint kind = 0;
    QString pattern;
};
struct PortalFilter {
    QString title;
    QList<PortalPattern> patterns;
};
/// An id and a text.
struct PortalPair {
    QString id;
    QString text;
};
struct PortalChoice {
    QString id;
    QString title;
    QList<PortalPair> options;
    QString selected;
};

// Found by the bus's library, which looks for them beside the types.
QDBusArgument& operator<<(QDBusArgument& to, const PortalPattern& pattern) {
    to.beginStructure();
    to << pattern.kind << pattern.pattern;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, PortalPattern& pattern) {
    from.beginStructure();
    from >> pattern.kind >> pattern.pattern;
    from.endStructure();
    return from;
}

QDBusArgument& operator<<(QDBusArgument& to, const PortalFilter& filter) {
    to.beginStructure();
    to << filter.title << filter.patterns;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, PortalFilter& filter) {
    from.beginStructure();
    from >> filter.title >> filter.patterns;
    from.endStructure();
    return from;
}

QDBusArgument& operator<<(QDBusArgument& to, const PortalPair& pair) {
    to.beginStructure();
    to << pair.id << pair.text;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, PortalPair& pair) {
    from.beginStructure();
    from >> pair.id >> pair.text;
    from.endStructure();
    return from;
}

QDBusArgument& operator<<(QDBusArgument& to, const PortalChoice& choice) {
    to.beginStructure();
    to << choice.id << choice.title << choice.options << choice.selected;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, PortalChoice& choice) {
    from.beginStructure();
    from >> choice.id >> choice.title >> choice.options >> choice.selected;
    from.endStructure();
    return from;
}

} // namespace quillabrae::platform

Q_DECLARE_METATYPE(quillabrae::platform::PortalPattern)
Q_DECLARE_METATYPE(quillabrae::platform::PortalFilter)
Q_DECLARE_METATYPE(quillabrae::platform::PortalPair)
Q_DECLARE_METATYPE(quillabrae::platform::PortalChoice)

namespace quillabrae::platform {
namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const auto optionsChoice = QStringLiteral("options");

/// What the portal says at the end of a request.
enum Response : uint { success = 0, cancelledByUser = 1 };

void registerTypes() {
    qDBusRegisterMetaType<PortalPattern>();
    qDBusRegisterMetaType<QList<PortalPattern>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
    qDBusRegisterMetaType<PortalPair>();
    qDBusRegisterMetaType<QList<PortalPair>>();
    qDBusRegisterMetaType<PortalChoice>();
    qDBusRegisterMetaType<QList<PortalChoice>>();
}

/// Paths travel as their bytes with a zero at the end.
QByteArray bytesOf(const QString& path) {
    return QFile::encodeName(path) + '\0';
}

PortalFilter portalFilter(const FileChooserQuestion::Filter& filter) {
    PortalFilter result{filter.title, {}};
    for (const QString& pattern : filter.patterns)
        result.patterns.append({0, inAnyLetterCase(pattern)});
    return result;
}

QVariantMap optionsOf(const FileChooserQuestion& question, const QString& token) {
    QVariantMap options{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("accept_label"), question.acceptLabel}};
    if (!question.folder.isEmpty())
        options.insert(QStringLiteral("current_folder"), bytesOf(question.folder));
    if (!question.name.isEmpty()) options.insert(QStringLiteral("current_name"), question.name);
    if (!question.filters.isEmpty()) {
        QList<PortalFilter> filters;
        for (const auto& filter : question.filters) filters.append(portalFilter(filter));
        options.insert(QStringLiteral("current_filter"), QVariant::fromValue(filters.constFirst()));
        options.insert(QStringLiteral("filters"), QVariant::fromValue(filters));
    }
    if (!question.options.isEmpty()) {
        PortalChoice choice{optionsChoice, question.optionsTitle, {}, question.options.first().id};
        for (const auto& option : question.options)
            choice.options.append({option.id, option.title});
        options.insert(QStringLiteral("choices"), QVariant::fromValue(QList{choice}));
    }
    return options;
}

void closeRequest(const QString& path) {
    QDBusConnection::sessionBus().send(
        QDBusMessage::createMethodCall(service, path, requestInterface, QStringLiteral("Close")));
}

} // namespace

QString portalNameOf(const QWindow* window) {
    if (window == nullptr || QGuiApplication::platformName() != u"xcb") return {};
    constexpr int hexadecimal = 16;
    return QStringLiteral("x11:") + QString::number(window->winId(), hexadecimal);
}

QString inAnyLetterCase(const QString& pattern) {
    QString result;
    for (const QChar letter : pattern) {
        if (letter.toLower() == letter.toUpper())
            result += letter;
        else
            result += QStringLiteral("[%1%2]").arg(letter.toLower()).arg(letter.toUpper());
    }
    return result;
}

FileChooserPortal::FileChooserPortal(QObject* parent) : QObject(parent) {}

FileChooserPortal::~FileChooserPortal() {
    close();
}

void FileChooserPortal::ask(const FileChooserQuestion& question) {
    m_stage = Stage::looking;
    if (!hasSessionBus()) {
        QTimer::singleShot(0, this, &FileChooserPortal::giveUp);
        return;
    }
    QTimer::singleShot(patience, this, [this] {
        if (m_stage != Stage::showing) giveUp();
    });
    const auto owners = QDBusServiceWatcher::WatchForOwnerChange;
    QDBusConnection bus = QDBusConnection::sessionBus();
    auto* portal = new QDBusServiceWatcher(service, bus, owners, this);
    connect(portal, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString& before) {
                // The one that was asked; at first it may only be starting.
                if (!before.isEmpty()) giveUp();
            });

    QDBusMessage version = QDBusMessage::createMethodCall(
        service, objectPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    version.setArguments({chooserInterface, QStringLiteral("version")});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(version), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, question] {
        watcher->deleteLater();
        if (m_stage != Stage::looking) return;
        if (watcher->isError())
            giveUp();
        else
            call(question);
    });
}

void FileChooserPortal::call(const FileChooserQuestion& question) {
    m_stage = Stage::calling;
    registerTypes();
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = QStringLiteral("quillabrae") + QUuid::createUuid().toString(QUuid::Id128);
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    // Where the answer will come from, to be listened to before anybody is asked.
    m_request = objectPath + QStringLiteral("/request/%1/%2").arg(sender, token);
    bus.connect(service, QString(), requestInterface, QStringLiteral("Response"), this,
                SLOT(takeResponse(uint, QVariantMap, QDBusMessage)));

    const bool opens = question.kind == FileChooserQuestion::Kind::open;
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, objectPath, chooserInterface,
        opens ? QStringLiteral("OpenFile") : QStringLiteral("SaveFile"));
    message.setArguments({question.parentWindow, question.title, optionsOf(question, token)});
    // Outlives this, since a dialog that comes too late has to be closed all the same.
    auto* watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(message), QCoreApplication::instance());
    const QPointer<FileChooserPortal> asker(this);
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [asker, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (asker.isNull() || asker->m_stage == Stage::ended) {
            if (reply.isValid()) closeRequest(reply.value().path());
        } else if (reply.isError()) {
            asker->giveUp();
        } else {
            asker->m_request = reply.value().path();
            asker->m_stage = Stage::showing;
        }
    });
}

void FileChooserPortal::takeResponse(uint response, const QVariantMap& results,
                                     const QDBusMessage& message) {
    if (message.path() != m_request) return;
    if (!end()) return;
    if (response == success)
        takeAnswer(results);
    else if (response == cancelledByUser)
        Q_EMIT cancelled();
    else
        Q_EMIT unavailable();
}

void FileChooserPortal::takeAnswer(const QVariantMap& results) {
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    const QUrl url = uris.isEmpty() ? QUrl() : QUrl(uris.first());
    const auto choices = qdbus_cast<QList<PortalPair>>(results.value(QStringLiteral("choices")));
    const auto option = std::ranges::find(choices, optionsChoice, &PortalPair::id);
    if (url.isLocalFile())
        Q_EMIT chosen(url.toLocalFile(), option == choices.end() ? QString() : option->text);
    else
        Q_EMIT unavailable();
}

void FileChooserPortal::giveUp() {
    close();
    if (end()) Q_EMIT unavailable();
}

void FileChooserPortal::close() {
    // A dialog that is asked for may come yet.
    if (m_stage == Stage::calling || m_stage == Stage::showing) closeRequest(m_request);
}

bool FileChooserPortal::end() {
    const bool wasOpen = m_stage != Stage::ended;
    m_stage = Stage::ended;
    return wasOpen;
}

} // namespace quillabrae::platform
