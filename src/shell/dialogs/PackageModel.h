// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSortFilterProxyModel>

namespace quillabrae::shell {

/// A file system model's rows, with project packages looking like files.
class PackageModel final : public QSortFilterProxyModel {
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    QVariant data(const QModelIndex& index, int role) const override;
    bool hasChildren(const QModelIndex& parent) const override;

protected:
    /// Folders first, then files and packages, each by the chosen column.
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
};

} // namespace quillabrae::shell
