// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/PackageModel.h"

#include "shell/dialogs/PanelRules.h"
#include "shell/looks/Symbols.h"

#include <QDateTime>
#include <QFileSystemModel>
#include <QIcon>

namespace quillabrae::shell {
namespace {

enum Column { nameColumn, sizeColumn, typeColumn, dateColumn };

QString pathOf(const QModelIndex& index) {
    return index.data(QFileSystemModel::FilePathRole).toString();
}

} // namespace

QVariant PackageModel::data(const QModelIndex& index, int role) const {
    const bool isText = role == Qt::DisplayRole;
    const bool isIcon = role == Qt::DecorationRole && index.column() == nameColumn;
    if ((!isText && !isIcon) || !PanelRules::isPackageName(pathOf(index))) {
        return QSortFilterProxyModel::data(index, role);
    }
    if (isIcon) return Symbols::icon(QStringLiteral("quillabrae.project"));
    if (index.column() == typeColumn) return tr("Quillabrae Project");
    return QSortFilterProxyModel::data(index, role);
}

bool PackageModel::hasChildren(const QModelIndex& parent) const {
    if (parent.isValid() && PanelRules::isPackageName(pathOf(parent))) return false;
    return QSortFilterProxyModel::hasChildren(parent);
}

bool PackageModel::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    const auto isFolder = [files](const QModelIndex& index) {
        return files->isDir(index) && !PanelRules::isPackageName(files->filePath(index));
    };
    if (isFolder(left) != isFolder(right)) {
        return (sortOrder() == Qt::AscendingOrder) == isFolder(left);
    }
    if (left.column() == dateColumn) {
        return files->lastModified(left) < files->lastModified(right);
    }
    if (left.column() == sizeColumn) return files->size(left) < files->size(right);
    return left.data().toString().localeAwareCompare(right.data().toString()) < 0;
}

} // namespace quillabrae::shell
