// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Translations.h"

#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>

#include <algorithm>

namespace quillabrae::platform {
namespace {

QString fileOf(const QString& language) {
    return QStringLiteral(":/translations/quillabrae_%1.qm").arg(language);
}

/// The language itself or the one that it is a kind of; empty where there is no file for either.
QString known(QString language) {
    language.replace(u'-', u'_');
    while (!language.isEmpty() && !QFile::exists(fileOf(language)))
        language.truncate(std::max<qsizetype>(language.lastIndexOf(u'_'), 0));
    return language;
}

QString firstKnown(const QStringList& languages) {
    for (const QString& wanted : languages) {
        const QString found = known(wanted);
        if (!found.isEmpty()) return found;
    }
    return QStringLiteral("en");
}

} // namespace

Translations::Translations(const QStringList& languages) : m_language(firstKnown(languages)) {
    // Nothing of Qt's is in a language that the rest is not in.
    if (m_qt.load(QStringLiteral("qtbase_") + m_language,
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
    if (m_own.load(fileOf(m_language))) QCoreApplication::installTranslator(&m_own);
    QGuiApplication::setLayoutDirection(QLocale(m_language).textDirection());
}

Translations::~Translations() {
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

} // namespace quillabrae::platform
