// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreEnvironment.h"

#include <QString>

#include <functional>

class QWidget;

namespace quillabrae::shell {

/// The store's panels and alerts as dialogs. Opens and saves where the last one of this run did, at
/// first in the user's pictures.
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
    std::optional<QUrl> chooseFile(const QString& title, const QString& kind,
                                   const QStringList& patterns, QWidget* parent);
    bool confirmOverwriteIfNeeded(const QUrl& url);
    QString startFolder() const;
    void rememberFolder(const QString& path);

    std::function<QWidget*()> m_parent;
    QString m_lastFolder;
};

} // namespace quillabrae::shell
