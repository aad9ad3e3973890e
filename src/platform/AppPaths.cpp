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

AppPaths inside(const QString& data, const QString& configuration, const QString& temporary) {
    return {data + QStringLiteral("/Quillabrae"), temporary,
            configuration + QStringLiteral("/Quillabrae/preferences.ini")};
}

} // namespace

AppPaths AppPaths::standard() {
    const QString temporary = folderOr(QStandardPaths::TempLocation, QDir::tempPath());
    return inside(folderOr(QStandardPaths::GenericDataLocation, temporary),
                  folderOr(QStandardPaths::GenericConfigLocation, temporary), temporary);
}

AppPaths AppPaths::under(const QString& home) {
    const QString root = QDir(home).absolutePath();
    return inside(root + QStringLiteral("/.local/share"), root + QStringLiteral("/.config"),
                  root + QStringLiteral("/tmp"));
}

} // namespace quillabrae::platform
