// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DesktopProjectPanels.h"

#include "shell/dialogs/Alert.h"
#include "shell/dialogs/PackageFileDialog.h"
#include "shell/dialogs/PanelRules.h"
#include "store/PromptTexts.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>

namespace quillabrae::shell {
namespace {

QComboBox* makeFormatList(QWidget* parent) {
    auto* list = new QComboBox(parent);
    list->setObjectName(QStringLiteral("saveFormat"));
    list->setAccessibleName(QStringLiteral("Format"));
    for (const persistence::SaveFormat format : persistence::allSaveFormats()) {
        list->addItem(persistence::title(format));
    }
    return list;
}

} // namespace

DesktopProjectPanels::DesktopProjectPanels(std::function<QWidget*()> parent)
    : m_parent(std::move(parent)) {}

QString DesktopProjectPanels::startFolder() const {
    if (!m_lastFolder.isEmpty() && QDir(m_lastFolder).exists()) return m_lastFolder;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).exists() ? pictures : QDir::homePath();
}

void DesktopProjectPanels::rememberFolder(const QString& path) {
    m_lastFolder = QFileInfo(path).absolutePath();
}

std::optional<QUrl> DesktopProjectPanels::chooseFile(const QString& title, const QString& kind,
                                                     const QStringList& patterns, QWidget* parent) {
    PackageFileDialog dialog(title, startFolder(), QFileDialog::AcceptOpen, parent);
    dialog.setNameFilters({kind + QStringLiteral(" (") + patterns.join(u' ') + u')',
                           QStringLiteral("All Files (*)")});
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    rememberFolder(dialog.chosenPath());
    return QUrl::fromLocalFile(dialog.chosenPath());
}

std::optional<QUrl> DesktopProjectPanels::chooseImage(const QString& title, QWidget* parent) {
    return chooseFile(title, QStringLiteral("Images"), PanelRules::imagePatterns(), parent);
}

std::optional<QUrl> DesktopProjectPanels::chooseProjectToOpen() {
    return chooseFile(QStringLiteral("Open Quillabrae Project or Image"),
                      QStringLiteral("Projects and Images"), PanelRules::projectAndImagePatterns(),
                      m_parent());
}

std::optional<QUrl> DesktopProjectPanels::chooseImageToImport() {
    return chooseImage(QStringLiteral("Import Layer From File"), m_parent());
}

std::optional<persistence::SaveDestination> DesktopProjectPanels::chooseSaveDestination(
    const QString& suggestedName) {
    PackageFileDialog dialog(QStringLiteral("Save Quillabrae"), startFolder(),
                             QFileDialog::AcceptSave, m_parent());
    QComboBox* formats = makeFormatList(&dialog);
    dialog.addAccessory(QStringLiteral("Format:"), formats);
    dialog.selectFile(PanelRules::fileNameFrom(suggestedName));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    rememberFolder(dialog.chosenPath());
    const auto chosen = static_cast<std::size_t>(formats->currentIndex());
    const persistence::SaveFormat format = persistence::allSaveFormats().at(chosen);
    const QUrl url = PanelRules::destination(dialog.chosenPath(), format);
    if (!confirmOverwriteIfNeeded(url)) return std::nullopt;
    return persistence::SaveDestination{url, format};
}

bool DesktopProjectPanels::confirmOverwriteIfNeeded(const QUrl& url) {
    const QFileInfo file(url.toLocalFile());
    if (!file.exists() && !file.isSymLink()) return true;
    return runAlert(Alerts::replaceFile(file.fileName()), m_parent()) == 0;
}

bool DesktopProjectPanels::confirmFlattenedImageSave(int layerCount) {
    return runAlert(Alerts::flattenBeforeSaving(layerCount), m_parent()) == 0;
}

store::SaveBeforeCloseChoice DesktopProjectPanels::requestSaveBeforeClosing(
    const QString& projectTitle) {
    return PanelRules::saveBeforeCloseChoice(
        runAlert(Alerts::saveBeforeClosing(projectTitle), m_parent()));
}

store::PasteImageChoice DesktopProjectPanels::choosePasteAction(QSizeF imageSize,
                                                                store::PasteTarget target) {
    return store::pasteChoice(runAlert(Alerts::pasteImage(imageSize, target), m_parent()), target);
}

} // namespace quillabrae::shell
