// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace quillabrae::shell {

class CommandActions;
class SideList;

/// A tour of the workspace for those who come from Paint.NET: a list of steps, the page of the
/// chosen one, and buttons that go back and forth. Enter, Page Down and Page Up go through it, and
/// Escape ends it.
class PaintNetQuickStartView final : public QWidget {
    Q_OBJECT

public:
    explicit PaintNetQuickStartView(const CommandActions& actions);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeSteps();
    QWidget* makeFooter();
    void showPage(int index);
    /// The next page, or after the last the end of the tour.
    void goOn();
    void goBack();
    int page() const;

    SideList* m_steps = nullptr;
    QStackedWidget* m_pages;
    QLabel* m_progress = nullptr;
    QPushButton* m_back = nullptr;
    QPushButton* m_next = nullptr;
};

} // namespace quillabrae::shell
