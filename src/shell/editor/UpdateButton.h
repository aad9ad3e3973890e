// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/HoverTooltip.h"

#include <QAbstractButton>
#include <QIcon>

namespace quillabrae::services {
class AppUpdateService;
}

namespace quillabrae::shell {

/// How far the program's update is, and the way on from there. A symbol alone while there is
/// nothing to tell; once something goes on its title stands beside it, on the accent where there is
/// an update to be had.
class UpdateButton final : public QAbstractButton {
    Q_OBJECT

public:
    /// `updates` outlives this.
    explicit UpdateButton(services::AppUpdateService& updates, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void follow();
    bool showsTitle() const;
    QColor faceColor() const;

    services::AppUpdateService& m_updates;
    HoverTooltip* m_tooltip;
    QIcon m_icon;
};

} // namespace quillabrae::shell
