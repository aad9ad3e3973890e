// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileDialog>
#include <QString>

class QLineEdit;

namespace quillabrae::shell {

/// A file dialog to which a project package, which is a folder, is a file: it is picked, not
/// entered. Typed paths work likewise.
class PackageFileDialog final : public QFileDialog {
    Q_OBJECT

public:
    PackageFileDialog(const QString& title, const QString& folder, AcceptMode mode,
                      QWidget* parent);

    /// The dialog's answer, once it was accepted.
    QString chosenPath() const { return m_chosenPath; }
    /// Puts a control with a title under the file's name.
    void addAccessory(const QString& title, QWidget* control);

protected:
    void accept() override;

private:
    void shareColumns();
    void showPlacesWhole();
    void pickPackagesAsFiles();
    void activate(const QModelIndex& index);
    void showSelection(const QModelIndex& index);
    QString typedPath() const;
    void choose(const QString& path);

    QLineEdit* m_nameField;
    QString m_chosenPath;
};

} // namespace quillabrae::shell
