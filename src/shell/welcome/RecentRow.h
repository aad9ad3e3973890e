// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/welcome/WelcomeContent.h"

#include <QAbstractButton>

namespace quillabrae::shell {

/// One recent project: its title and folder, and a control that takes it off the list.
class RecentRow final : public QAbstractButton {
    Q_OBJECT

public:
    explicit RecentRow(const WelcomeContent::Recent& recent, QWidget* parent = nullptr);

    QSize sizeHint() const override;

Q_SIGNALS:
    void removeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    /// Where the control begins while text runs from left to right.
    int removeLeft() const;

    QString m_title;
    QString m_folder;
    QWidget* m_remove;
};

} // namespace quillabrae::shell
