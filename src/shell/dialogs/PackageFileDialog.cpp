// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/PackageFileDialog.h"

#include "shell/controls/TextSize.h"
#include "shell/dialogs/PackageModel.h"
#include "shell/dialogs/PanelRules.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTreeView>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{760, 520};
constexpr int widestPlaces = 140;

} // namespace

PackageFileDialog::PackageFileDialog(const QString& title, const QString& folder, AcceptMode mode,
                                     QWidget* parent)
    : QFileDialog(parent, title, folder) {
    setOptions(DontUseNativeDialog | DontConfirmOverwrite | DontUseCustomDirectoryIcons |
               HideNameFilterDetails);
    setAcceptMode(mode);
    setFileMode(mode == AcceptOpen ? ExistingFile : AnyFile);
    setProxyModel(new PackageModel(this));
    setDirectory(folder);
    m_nameField = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    shareColumns();
    showPlacesWhole();
    pickPackagesAsFiles();
    TextSize::limitSize(*this, {});
    resize(QSize(TextSize::scaled(dialogSize.width(), *this),
                 TextSize::scaled(dialogSize.height(), *this))
               .boundedTo(TextSize::roomFor(*this)));
}

/// Names take what the other columns leave, which are as wide as what is in them.
void PackageFileDialog::shareColumns() {
    QHeaderView* header = findChild<QTreeView*>(QStringLiteral("treeView"))->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
}

/// The list of places is as wide as they are, within reason.
void PackageFileDialog::showPlacesWhole() {
    auto* places = findChild<QListView*>(QStringLiteral("sidebar"));
    TextSize::follow(*places, [places] {
        const int widest = TextSize::scaled(widestPlaces, *places);
        places->setMinimumWidth(
            std::min(places->sizeHintForColumn(0) + 2 * places->frameWidth(), widest));
    });
}

void PackageFileDialog::pickPackagesAsFiles() {
    for (const auto* name : {"listView", "treeView"}) {
        auto* view = findChild<QAbstractItemView*>(QLatin1StringView(name));
        // The dialog's own answer to an activated folder is to enter it.
        view->disconnect(SIGNAL(activated(QModelIndex)), this);
        connect(view, &QAbstractItemView::activated, this, &PackageFileDialog::activate);
        connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this,
                &PackageFileDialog::showSelection);
    }
}

void PackageFileDialog::activate(const QModelIndex& index) {
    const QString path = index.data(QFileSystemModel::FilePathRole).toString();
    if (path.isEmpty()) return;
    if (QFileInfo(path).isDir() && !PanelRules::isPackageName(path))
        setDirectory(path);
    else if (acceptMode() == AcceptOpen)
        choose(path);
    else
        accept();
}

void PackageFileDialog::showSelection(const QModelIndex& index) {
    const QString path = index.data(QFileSystemModel::FilePathRole).toString();
    // Plain files are shown by the dialog itself.
    if (PanelRules::isPackageName(path)) m_nameField->setText(QFileInfo(path).fileName());
}

QString PackageFileDialog::typedPath() const {
    QString typed = m_nameField->text();
    if (typed == u"~" || typed.startsWith(QLatin1StringView("~/"))) {
        typed.replace(0, 1, QDir::homePath());
    }
    while (typed.size() > 1 && typed.endsWith(u'/')) typed.chop(1);
    return typed.isEmpty() ? QString() : QDir::cleanPath(directory().absoluteFilePath(typed));
}

void PackageFileDialog::accept() {
    const QString path = typedPath();
    if (path.isEmpty()) return;
    const QFileInfo file(path);
    const bool isPlainFolder = file.isDir() && !PanelRules::isPackageName(path);
    const bool isAnswer =
        !isPlainFolder && (acceptMode() == AcceptOpen ? file.exists() : file.dir().exists());
    if (isAnswer)
        choose(path);
    else
        QFileDialog::accept();
}

void PackageFileDialog::choose(const QString& path) {
    m_chosenPath = path;
    done(Accepted);
}

void PackageFileDialog::addAccessory(const QString& title, QWidget* control) {
    for (const auto* name : {"fileTypeLabel", "fileTypeCombo"}) {
        findChild<QWidget*>(QLatin1StringView(name))->hide();
    }
    auto* grid = qobject_cast<QGridLayout*>(layout());
    const int row = grid->rowCount();
    auto* label = new QLabel(title, this);
    label->setBuddy(control);
    grid->addWidget(label, row, 0);
    grid->addWidget(control, row, 1);
}

} // namespace quillabrae::shell
