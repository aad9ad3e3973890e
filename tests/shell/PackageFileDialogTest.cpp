// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/HeldDialog.h"
#include "shell/dialogs/PackageFileDialog.h"
#include "shell/dialogs/PanelRules.h"
#include "store/StoreTest.h"

#include <QAbstractItemView>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

class PackageFileDialogTest : public testing::Test {
protected:
    PackageFileDialogTest() {
        QDir(folder.path()).mkdir(QStringLiteral("cat.quillabrae"));
        QDir(folder.path()).mkdir(QStringLiteral("plain"));
        QFile picture(path("dog.png"));
        EXPECT_TRUE(picture.open(QIODevice::WriteOnly));
    }

    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
    std::unique_ptr<PackageFileDialog> makeDialog(QFileDialog::AcceptMode mode) const {
        auto dialog = std::make_unique<PackageFileDialog>(QStringLiteral("Test"), folder.path(),
                                                          mode, nullptr);
        dialog->setNameFilters(
            {QStringLiteral("All (") + PanelRules::projectAndImagePatterns().join(u' ') + u')'});
        dialog->show();
        return dialog;
    }
    static QAbstractItemView* view(const PackageFileDialog& dialog) {
        return dialog.findChild<QAbstractItemView*>(QStringLiteral("treeView"));
    }
    /// The row that shows a path, once the dialog has read the folder.
    static QModelIndex row(const PackageFileDialog& dialog, const QString& path) {
        QModelIndex found;
        const auto isThere = [&] {
            const QAbstractItemView* list = view(dialog);
            const QModelIndex root = list->rootIndex();
            for (int row = 0; row < list->model()->rowCount(root); ++row) {
                const QModelIndex index = list->model()->index(row, 0, root);
                if (index.data(QFileSystemModel::FilePathRole) == path) found = index;
            }
            return found.isValid();
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere)) << qPrintable(path);
        return found;
    }
    static void type(const PackageFileDialog& dialog, const QString& text) {
        auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        name->setText(text);
        QTest::keyClick(name, Qt::Key_Return);
    }

    QTemporaryDir folder;
};

TEST_F(PackageFileDialogTest, PicksAnActivatedPackageInsteadOfEnteringIt) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    Q_EMIT view(*dialog)->activated(row(*dialog, path("cat.quillabrae")));
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->chosenPath(), path("cat.quillabrae"));
}

TEST_F(PackageFileDialogTest, GoesWithTheWindowThatItIsRunFor) {
    auto window = std::make_unique<QWidget>();
    HeldDialog dialog(new PackageFileDialog(QStringLiteral("Test"), folder.path(),
                                            QFileDialog::AcceptOpen, window.get()));
    QTimer::singleShot(0, dialog.get(), [&] { window.reset(); });
    EXPECT_FALSE(dialog.isAccepted());
    EXPECT_EQ(dialog.get(), nullptr);
}

TEST_F(PackageFileDialogTest, StillEntersAnActivatedPlainFolder) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    Q_EMIT view(*dialog)->activated(row(*dialog, path("plain")));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->directory().absolutePath(), path("plain"));
}

TEST_F(PackageFileDialogTest, ShowsThePackageThatIsSelectedAsTheName) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    view(*dialog)->setCurrentIndex(row(*dialog, path("cat.quillabrae")));
    EXPECT_EQ(dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(),
              QStringLiteral("cat.quillabrae"));
}

TEST_F(PackageFileDialogTest, CallsAPackageAProjectAndOffersNothingInsideIt) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    const QModelIndex package = row(*dialog, path("cat.quillabrae"));
    constexpr int typeColumn = 2;
    EXPECT_EQ(package.siblingAtColumn(typeColumn).data().toString(),
              QStringLiteral("Quillabrae Project"));
    EXPECT_FALSE(package.model()->hasChildren(package));
}

TEST_F(PackageFileDialogTest, SortsPackagesAmongFilesAfterFolders) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    const int folderRow = row(*dialog, path("plain")).row();
    EXPECT_LT(folderRow, row(*dialog, path("cat.quillabrae")).row());
    EXPECT_LT(folderRow, row(*dialog, path("dog.png")).row());
}

TEST_F(PackageFileDialogTest, ShowsKindsAndDatesWhole) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    row(*dialog, path("dog.png"));
    const auto* tree = qobject_cast<const QTreeView*>(view(*dialog));
    QCoreApplication::processEvents();
    int width = 0;
    for (int column = 0; column < tree->header()->count(); ++column) {
        width += tree->columnWidth(column);
        if (tree->isColumnHidden(column) || column == 0) continue;
        const QString text = tree->model()->index(1, column, tree->rootIndex()).data().toString();
        EXPECT_GT(tree->columnWidth(column), tree->fontMetrics().horizontalAdvance(text))
            << qPrintable(text);
    }
    EXPECT_EQ(width, tree->viewport()->width());
}

TEST_F(PackageFileDialogTest, AcceptsTypedNamesAndPaths) {
    for (const QString& typed :
         {QStringLiteral("cat.quillabrae"), path("cat.quillabrae"),
          QStringLiteral("cat.quillabrae/"), QStringLiteral("plain/../cat.quillabrae")}) {
        const auto dialog = makeDialog(QFileDialog::AcceptOpen);
        type(*dialog, typed);
        EXPECT_EQ(dialog->chosenPath(), path("cat.quillabrae")) << qPrintable(typed);
    }
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    type(*dialog, QStringLiteral("dog.png"));
    EXPECT_EQ(dialog->chosenPath(), path("dog.png"));
}

TEST_F(PackageFileDialogTest, EntersATypedFolder) {
    const auto dialog = makeDialog(QFileDialog::AcceptOpen);
    type(*dialog, QStringLiteral("plain"));
    EXPECT_TRUE(dialog->chosenPath().isEmpty());
    EXPECT_EQ(dialog->directory().absolutePath(), path("plain"));
}

TEST_F(PackageFileDialogTest, SavesUnderANewNameAndOverAPackage) {
    for (const auto* name : {"new name", "cat.quillabrae"}) {
        const auto dialog = makeDialog(QFileDialog::AcceptSave);
        type(*dialog, QString::fromLatin1(name));
        EXPECT_EQ(dialog->chosenPath(), path(name));
    }
}

} // namespace
} // namespace quillabrae::shell
