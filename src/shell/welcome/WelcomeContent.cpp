// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/welcome/WelcomeContent.h"

#include "store/ProjectStore.h"

#include <QDir>
#include <QFileInfo>

namespace quillabrae::shell {
namespace {

QString shortFolder(const QUrl& file) {
    if (!file.isLocalFile())
        return file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash).toDisplayString();
    const QString folder = QFileInfo(file.toLocalFile()).absolutePath();
    const QString home = QDir::homePath();
    if (folder == home) return QStringLiteral("~");
    return folder.startsWith(home + u'/') ? u'~' + folder.mid(home.size()) : folder;
}

} // namespace

WelcomeContent WelcomeContent::of(const store::ProjectStore& store) {
    WelcomeContent content;
    for (const model::RecentProject& recent : store.recents()) {
        content.recents.push_back({recent, shortFolder(recent.url)});
    }
    content.offersClosedWork = store.hasClosedWork();
    // What the editor reported of work that went well is no news here.
    if (store.statusKind() == store::StatusKind::failure) content.status = store.statusMessage();
    return content;
}

} // namespace quillabrae::shell
