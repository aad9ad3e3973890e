// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DesktopProjectPanels.h"

#include "shell/dialogs/Alert.h"
#include "shell/dialogs/DesktopFileDialog.h"
#include "shell/dialogs/HeldDialog.h"
#include "shell/dialogs/PackageFileDialog.h"
#include "shell/dialogs/PanelRules.h"
#include "store/PromptTexts.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>

namespace quillabrae::shell {
namespace {

/// The context of this file's texts, for translators.
struct ProjectPanelsTexts {
    Q_DECLARE_TR_FUNCTIONS(ProjectPanelsTexts)
};

QComboBox* makeFormatList(QWidget* parent) {
    auto* list = new QComboBox(parent);
    list->setObjectName(QStringLiteral("saveFormat"));
    list->setAccessibleName(ProjectPanelsTexts::tr("Format"));
    for (const persistence::SaveFormat format : persistence::allSaveFormats()) {
        list->addItem(persistence::title(format));
    }
    return list;
}

platform::FileChooserQuestion::Filter imageFilter() {
    return {ProjectPanelsTexts::tr("Images"), PanelRules::imagePatterns()};
}

platform::FileChooserQuestion::Filter everyFile() {
    return {ProjectPanelsTexts::tr("All Files"), {QStringLiteral("*")}};
}

/// As our own dialog has it.
QString nameFilter(const platform::FileChooserQuestion::Filter& filter) {
    return filter.title + QStringLiteral(" (") + filter.patterns.join(u' ') + u')';
}

QList<platform::FileChooserQuestion::Option> formatOptions() {
    QList<platform::FileChooserQuestion::Option> options;
    for (const persistence::SaveFormat format : persistence::allSaveFormats())
        options.append({persistence::rawText(format), persistence::title(format)});
    return options;
}

/// What an answer of the desktop's dialog is to be saved as. One that shows no options leaves it to
/// the name.
persistence::SaveFormat formatOf(const DesktopFileDialog::Answer& answer) {
    if (const auto chosen = persistence::saveFormatFromRawText(answer.option)) return *chosen;
    return persistence::saveFormatOf(QUrl::fromLocalFile(answer.path))
        .value_or(persistence::SaveFormat::project);
}

} // namespace

DesktopProjectPanels::DesktopProjectPanels(std::function<QWidget*()> parent)
    : m_parent(std::move(parent)) {}

QString DesktopProjectPanels::startFolder() const {
    if (!m_lastFolder.isEmpty() && QDir(m_lastFolder).exists()) return m_lastFolder;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).exists() ? pictures : QDir::homePath();
}

std::optional<QUrl> DesktopProjectPanels::remembered(const QString& path) {
    m_lastFolder = QFileInfo(path).absolutePath();
    return QUrl::fromLocalFile(path);
}

std::optional<QUrl> DesktopProjectPanels::chooseFile(
    const QString& title, const platform::FileChooserQuestion::Filter& filter, QWidget* parent) {
    HeldDialog dialog(new PackageFileDialog(title, startFolder(), QFileDialog::AcceptOpen, parent));
    dialog->setNameFilters({nameFilter(filter), nameFilter(everyFile())});
    if (!dialog.isAccepted()) return std::nullopt;
    return remembered(dialog->chosenPath());
}

std::optional<QUrl> DesktopProjectPanels::chooseImage(const QString& title, QWidget* parent) {
    const auto answer = DesktopFileDialog::ask({.title = title,
                                                .acceptLabel = ProjectPanelsTexts::tr("Open"),
                                                .filters = {imageFilter(), everyFile()},
                                                .folder = startFolder()},
                                               parent);
    switch (answer.outcome) {
        case DesktopFileDialog::Outcome::chosen:
            return remembered(answer.path);
        case DesktopFileDialog::Outcome::cancelled:
            return std::nullopt;
        case DesktopFileDialog::Outcome::unavailable:
            break;
    }
    return chooseFile(title, imageFilter(), parent);
}

std::optional<QUrl> DesktopProjectPanels::chooseProjectToOpen() {
    return chooseFile(
        ProjectPanelsTexts::tr("Open Quillabrae Project or Image"),
        {ProjectPanelsTexts::tr("Projects and Images"), PanelRules::projectAndImagePatterns()},
        m_parent());
}

std::optional<QUrl> DesktopProjectPanels::chooseImageToImport() {
    return chooseImage(ProjectPanelsTexts::tr("Import Layer From File"), m_parent());
}

std::optional<persistence::SaveDestination> DesktopProjectPanels::chooseSaveDestination(
    const QString& suggestedName) {
    const QString title = ProjectPanelsTexts::tr("Save Quillabrae");
    const QString name = PanelRules::fileNameFrom(suggestedName);
    const auto answer = DesktopFileDialog::ask({.kind = platform::FileChooserQuestion::Kind::save,
                                                .title = title,
                                                .acceptLabel = ProjectPanelsTexts::tr("Save"),
                                                .folder = startFolder(),
                                                .name = name,
                                                .optionsTitle = ProjectPanelsTexts::tr("Format:"),
                                                .options = formatOptions()},
                                               m_parent());
    switch (answer.outcome) {
        case DesktopFileDialog::Outcome::chosen:
            return destinationOf(PanelRules::outsideOfPackages(answer.path), formatOf(answer),
                                 QUrl::fromLocalFile(answer.path));
        case DesktopFileDialog::Outcome::cancelled:
            return std::nullopt;
        case DesktopFileDialog::Outcome::unavailable:
            break;
    }
    return chooseDestinationHere(title, name);
}

std::optional<persistence::SaveDestination> DesktopProjectPanels::chooseDestinationHere(
    const QString& title, const QString& name) {
    HeldDialog dialog(
        new PackageFileDialog(title, startFolder(), QFileDialog::AcceptSave, m_parent()));
    QComboBox* formats = makeFormatList(dialog.get());
    dialog->addAccessory(ProjectPanelsTexts::tr("Format:"), formats);
    dialog->selectFile(name);
    if (!dialog.isAccepted()) return std::nullopt;
    const auto chosen = static_cast<std::size_t>(formats->currentIndex());
    return destinationOf(dialog->chosenPath(), persistence::allSaveFormats().at(chosen), QUrl());
}

std::optional<persistence::SaveDestination> DesktopProjectPanels::destinationOf(
    const QString& path, persistence::SaveFormat format, const QUrl& agreedTo) {
    m_lastFolder = QFileInfo(path).absolutePath();
    const QUrl url = PanelRules::destination(path, format);
    // To other programs a package is a folder, which nobody is asked about.
    const bool isAgreed = url == agreedTo && QFileInfo(url.toLocalFile()).isFile();
    if (!isAgreed && !confirmOverwriteIfNeeded(url)) return std::nullopt;
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
