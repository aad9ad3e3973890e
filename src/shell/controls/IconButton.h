// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/HoverTooltip.h"

#include <QAbstractButton>
#include <QIcon>

namespace quillabrae::shell {

/// A flat button that shows one symbol; its title and help are in the tooltip. A checked one is
/// washed with the accent. The icon is looked up when it is first painted.
class IconButton : public QAbstractButton {
    Q_OBJECT

public:
    struct Face {
        QString symbolName;
        QString title;
        QString help;
        int extent = 28;
        int iconExtent = 22;
        HoverTooltipPlacement tooltipPlacement = HoverTooltipPlacement::below;
    };

    explicit IconButton(const Face& face, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    void setSymbolName(const QString& symbolName);
    /// Another title, with the help that the button has.
    void setTitle(const QString& title);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QColor faceColor() const;

    QString m_symbolName;
    QString m_help;
    HoverTooltip* m_tooltip;
    QIcon m_icon;
    int m_extent;
    int m_iconExtent;
};

} // namespace quillabrae::shell
