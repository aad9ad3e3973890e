// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AppPaths.h"

#include <QDir>
#include <QStandardPaths>

namespace quillabrae::platform {
namespace {

QString folderOr(QStandardPaths::StandardLocation location, const QString& fallback) {
    const QString folder = QStandardPaths::writableLocation(location);
    return folder.isEmpty() ? fallback : folder;
}

/// Qt 6.4 does not know this one.
QString stateHome() {
    const QString told = qEnvironmentVariable("XDG_STATE_HOME");
    return QDir::isAbsolutePath(told) ? told : QDir::homePath() + QStringLiteral("/.local/state");
}

struct Homes {
    QString data;
    QString configuration;
    QString state;
    QString temporary;
};

AppPaths inside(const Homes& homes) {
    return {homes.data + QStringLiteral("/Quillabrae"), homes.temporary,
            homes.configuration + QStringLiteral("/Quillabrae/preferences.ini"),
            homes.state + QStringLiteral("/Quillabrae")};
}

} // namespace

AppPaths AppPaths::standard() {
    const QString temporary = folderOr(QStandardPaths::TempLocation, QDir::tempPath());
    return inside({folderOr(QStandardPaths::GenericDataLocation, temporary),
                   folderOr(QStandardPaths::GenericConfigLocation, temporary), stateHome(),
                   temporary});
}

AppPaths AppPaths::under(const QString& home) {
    const QString root = QDir(home).absolutePath();
    return inside({root + QStringLiteral("/.local/share"), root + QStringLiteral("/.config"),
                   root + QStringLiteral("/.local/state"), root + QStringLiteral("/tmp")});
}

} // namespace quillabrae::platform
