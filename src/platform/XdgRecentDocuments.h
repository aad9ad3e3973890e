// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RecentDocuments.h"
#include "platform/SharedFile.h"
#include "platform/WorkQueue.h"

#include <QString>

#include <functional>

namespace quillabrae::platform {

/// Whether this user lets programs note which files were used, as far as GTK's, GNOME's and KDE's
/// settings say. May wait for another program for a moment.
bool desktopNotesRecentFiles();

/// The list of a freedesktop desktop, RecentlyUsedList.h. It is changed on a thread of its own, one
/// change after the other; destruction waits for them. A list that is no file, that this user may
/// not write, or that is not in order is left as it is.
class XdgRecentDocuments final : public RecentDocuments {
public:
    using Missing = MissingFile;

    /// Changes `file`, while `isWanted`, which is asked on that thread.
    XdgRecentDocuments(QString file, Missing missing,
                       std::function<bool()> isWanted = desktopNotesRecentFiles);

    /// The user's list; a desktop that runs has one or is about to have it.
    static QString standardFile();
    static Missing standardMissing();

    void add(const QUrl& project) override;
    void remove(const QUrl& project) override;
    /// Waits until all changes are in the file.
    void finish();

private:
    void change(ContentChange change);
    void changeNow(const ContentChange& change) const;

    QString m_file;
    Missing m_missing;
    std::function<bool()> m_isWanted;
    WorkQueue m_work;
};

} // namespace quillabrae::platform
