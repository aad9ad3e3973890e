// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/PaintNetQuickStartView.h"

#include "shell/commands/CommandActions.h"
#include "shell/controls/BodyScroller.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SideList.h"
#include "shell/controls/TextSize.h"
#include "shell/controls/VisualPart.h"
#include "shell/looks/Style.h"
#include "shell/quickstart/TourPageView.h"
#include "shell/quickstart/TourPages.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>

namespace quillabrae::shell {
namespace {

constexpr int stepsWidth = 168;
constexpr int footerHeight = 60;
constexpr int buttonWidth = 104;

QPushButton* makeButton(const QString& title, QWidget* parent) {
    auto* button = new QPushButton(title, parent);
    button->setAutoDefault(true);
    button->setMinimumWidth(buttonWidth);
    return button;
}

} // namespace

PaintNetQuickStartView::PaintNetQuickStartView(const CommandActions& actions)
    : m_pages(new QStackedWidget) {
    actions.addKeysTo(*this);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(makeSteps());
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    for (const TourPage& page : tourPages()) {
        auto* body = new BodyScroller(new TourPageView(page));
        body->setAccessibleName(tourText(page.heading));
        m_pages->addWidget(body);
    }
    column->addWidget(m_pages, 1);
    column->addWidget(makeFooter());
    row->addLayout(column, 1);
    connect(m_steps, &SideList::currentRowChanged, this, &PaintNetQuickStartView::showPage);
    m_steps->setCurrentRow(0);
    m_next->setFocus();
}

QWidget* PaintNetQuickStartView::makeSteps() {
    auto* side = new QWidget(this);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(Style::grid, 2 * Style::grid, Style::grid, 2 * Style::grid);
    m_steps = new SideList(tr("Steps"), side);
    for (const TourPage& page : tourPages())
        m_steps->addRow(QString::fromLatin1(page.symbolName), tourText(page.step));
    m_steps->fitWidth(stepsWidth - 2 * Style::grid);
    layout->addWidget(m_steps);
    return side;
}

QWidget* PaintNetQuickStartView::makeFooter() {
    auto* footer = new QWidget(this);
    TextSize::follow(*footer,
                     [footer] { footer->setFixedHeight(TextSize::scaled(footerHeight, *footer)); });
    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(28, 0, 28, Style::grid);
    row->setSpacing(Style::grid);
    m_progress = Labels::muted({}, footer);
    m_back = makeButton(tr("Back"), footer);
    m_next = makeButton(tr("Next"), footer);
    m_next->setDefault(true);
    Style::markPrimary(*m_next);
    row->addWidget(m_progress, 1);
    row->addWidget(m_back);
    row->addWidget(m_next);
    connect(m_back, &QPushButton::clicked, this, &PaintNetQuickStartView::goBack);
    connect(m_next, &QPushButton::clicked, this, &PaintNetQuickStartView::goOn);
    return footer;
}

int PaintNetQuickStartView::page() const {
    return m_steps->currentRow();
}

void PaintNetQuickStartView::showPage(int index) {
    const bool isLast = index + 1 == m_pages->count();
    m_pages->setCurrentIndex(index);
    m_progress->setText(tr("Step %1 of %2").arg(index + 1).arg(m_pages->count()));
    m_back->setEnabled(index > 0);
    m_next->setText(isLast ? tr("Done") : tr("Next"));
}

void PaintNetQuickStartView::goOn() {
    if (page() + 1 < m_pages->count())
        m_steps->setCurrentRow(page() + 1);
    else
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

void PaintNetQuickStartView::goBack() {
    if (page() == 0) return;
    m_steps->setCurrentRow(page() - 1);
    // A disabled button would keep the keyboard from the tour.
    if (page() == 0) m_next->setFocus();
}

void PaintNetQuickStartView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_PageDown:
            if (page() + 1 < m_pages->count()) goOn();
            return;
        case Qt::Key_PageUp:
            return goBack();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return goOn();
        case Qt::Key_Escape:
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void PaintNetQuickStartView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int side = m_steps->parentWidget()->width();
    const int footer = m_next->parentWidget()->height();
    painter.fillRect(visualPart(*this, rect().adjusted(side, 0, 0, 0)), Style::raised(palette()));
    painter.fillRect(visualPart(*this, {side, 0, 1, height()}), Style::line(palette()));
    painter.fillRect(visualPart(*this, {side, height() - footer, width() - side, 1}),
                     Style::line(palette()));
}

} // namespace quillabrae::shell
