// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/PanelRules.h"

#include <QFileInfo>

#include <algorithm>

namespace quillabrae::shell::PanelRules {
namespace {

/// What the image readers know; an extension that no reader handles only fails to open.
QStringList imageExtensions() {
    QStringList extensions;
    for (const persistence::SaveFormat format : persistence::allSaveFormats()) {
        if (format != persistence::SaveFormat::project) {
            extensions += persistence::recognisedExtensions(format);
        }
    }
    extensions += {QStringLiteral("heif"), QStringLiteral("avif"), QStringLiteral("ico"),
                   QStringLiteral("tga"),  QStringLiteral("ppm"),  QStringLiteral("pgm"),
                   QStringLiteral("pbm"),  QStringLiteral("xpm"),  QStringLiteral("jfif")};
    return extensions;
}

QString pattern(const QString& extension) {
    return QStringLiteral("*.") + extension;
}

/// Where a name's extension begins, at its dot; the name's length when it has none. What follows a
/// dot is no extension when the dot is first or last or when a blank stands in it.
qsizetype extensionStart(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot <= 0 || dot + 1 == name.size() || name.indexOf(u' ', dot) >= 0) return name.size();
    return dot;
}

} // namespace

QString packageExtension() {
    return persistence::fileExtension(persistence::SaveFormat::project);
}

bool isPackageName(const QString& path) {
    return QFileInfo(path).suffix().compare(packageExtension(), Qt::CaseInsensitive) == 0;
}

QStringList imagePatterns() {
    QStringList patterns = imageExtensions();
    std::ranges::transform(patterns, patterns.begin(), pattern);
    return patterns;
}

QStringList projectAndImagePatterns() {
    return QStringList(pattern(packageExtension())) + imagePatterns();
}

QUrl destination(const QString& typedPath, persistence::SaveFormat format) {
    const qsizetype nameStart = typedPath.lastIndexOf(u'/') + 1;
    const QString name = typedPath.mid(nameStart);
    return QUrl::fromLocalFile(typedPath.left(nameStart) + name.left(extensionStart(name)) + u'.' +
                               persistence::fileExtension(format));
}

QString outsideOfPackages(const QString& path) {
    QString outermost = path;
    for (QString folder = path; folder.size() > 1; folder = QFileInfo(folder).path()) {
        if (isPackageName(folder) && QFileInfo(folder).isDir()) outermost = folder;
    }
    return outermost;
}

QString fileNameFrom(const QString& suggestedName) {
    QString name = suggestedName;
    name.replace(u'/', u'-');
    return name;
}

store::SaveBeforeCloseChoice saveBeforeCloseChoice(int button) {
    using enum store::SaveBeforeCloseChoice;
    switch (button) {
        case 0:
            return save;
        case 1:
            return discard;
        default:
            return cancel;
    }
}

} // namespace quillabrae::shell::PanelRules
