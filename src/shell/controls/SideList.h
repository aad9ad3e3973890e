// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListWidget>

namespace quillabrae::shell {

/// The list at a window's side that chooses what the rest of the window shows: rows of a symbol and
/// a title, and headings between them, which cannot be chosen.
class SideList final : public QListWidget {
    Q_OBJECT

public:
    explicit SideList(const QString& accessibleName, QWidget* parent = nullptr);

    void addRow(const QString& symbolName, const QString& title);
    void addHeading(const QString& title);
    /// Keeps the list as wide as its rows need, `least` points at usual letters at least. Rows
    /// stand already.
    void fitWidth(int least);

protected:
    void changeEvent(QEvent* event) override;
};

/// Paints the ground of the side of a window that such a list stands in, and the line at its edge.
void paintSide(QWidget& window, int width);

} // namespace quillabrae::shell
