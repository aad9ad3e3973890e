// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

namespace quillabrae::platform {

/// The language that the program speaks as long as this lives: the first of those wanted that it
/// has, or else English, whose plural forms are a translation too. Qt's own texts and the direction
/// of layouts follow.
///
/// Texts that were translated before stay as they are, so this stands before all windows.
class Translations {
public:
    /// \param languages as `QLocale::uiLanguages` names them; "de-AT" stands for "de" as well.
    explicit Translations(const QStringList& languages);
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    /// As "pt_BR".
    const QString& language() const { return m_language; }

private:
    QString m_language;
    QTranslator m_qt;
    QTranslator m_own;
};

} // namespace quillabrae::platform
