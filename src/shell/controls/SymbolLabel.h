// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QWidget>

namespace quillabrae::shell {

/// A symbol that is only looked at. The icon is looked up when it is first painted.
class SymbolLabel final : public QWidget {
    Q_OBJECT

public:
    SymbolLabel(const QString& symbolName, int extent, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString m_symbolName;
    QIcon m_icon;
};

} // namespace quillabrae::shell
