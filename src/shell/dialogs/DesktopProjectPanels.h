// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileChooserPortal.h"
#include "store/StoreEnvironment.h"

#include <QString>

#include <functional>

class QWidget;

namespace quillabrae::shell {

/// The store's panels and alerts as dialogs. Opens and saves where the last one of this run did, at
/// first in the user's pictures. Files are chosen in the desktop's own dialog where it has one, but
/// for projects: to other programs those are folders, which cannot be picked.
class DesktopProjectPanels final : public store::ProjectPanels {
public:
    /// `parent` gives the window that a dialog belongs to, or null.
    explicit DesktopProjectPanels(std::function<QWidget*()> parent);

    /// An image file for what `title` says.
    std::optional<QUrl> chooseImage(const QString& title, QWidget* parent);

    std::optional<QUrl> chooseProjectToOpen() override;
    std::optional<QUrl> chooseImageToImport() override;
    std::optional<persistence::SaveDestination> chooseSaveDestination(
        const QString& suggestedName) override;
    bool confirmFlattenedImageSave(int layerCount) override;
    store::SaveBeforeCloseChoice requestSaveBeforeClosing(const QString& projectTitle) override;
    store::PasteImageChoice choosePasteAction(QSizeF imageSize, store::PasteTarget target) override;

private:
    std::optional<QUrl> chooseFile(const QString& title,
                                   const platform::FileChooserQuestion::Filter& filter,
                                   QWidget* parent);
    std::optional<persistence::SaveDestination> chooseDestinationHere(const QString& title,
                                                                      const QString& name);
    /// `path` as `format`, unless what is there is not to be replaced. `agreedTo` is what the user
    /// was asked about already, or empty.
    std::optional<persistence::SaveDestination> destinationOf(const QString& path,
                                                              persistence::SaveFormat format,
                                                              const QUrl& agreedTo);
    bool confirmOverwriteIfNeeded(const QUrl& url);
    QString startFolder() const;
    std::optional<QUrl> remembered(const QString& path);

    std::function<QWidget*()> m_parent;
    QString m_lastFolder;
};

} // namespace quillabrae::shell
