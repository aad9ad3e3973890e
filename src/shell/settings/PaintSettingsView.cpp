// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/PaintSettingsView.h"

#include "shell/controls/ControlScroller.h"
#include "shell/controls/SideList.h"
#include "shell/looks/Style.h"
#include "shell/settings/SettingsPane.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QStackedWidget>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr int sideWidth = 192;

/// What a pane is shown in, which scrolls one that is higher than the window, and is never narrower
/// than the pane.
class PaneFrame final : public ControlScroller {
public:
    using ControlScroller::ControlScroller;

    QSize minimumSizeHint() const override {
        QSize size = ControlScroller::minimumSizeHint();
        if (widget() == nullptr) return size;
        const int pane = widget()->minimumSizeHint().width();
        return {std::max(size.width(), pane + verticalScrollBar()->sizeHint().width()),
                size.height()};
    }
};

} // namespace

PaintSettingsView::PaintSettingsView(SettingsContext context)
    : m_context(std::move(context)),
      m_sections(new SideList(tr("Sections"), this)),
      m_panes(new QStackedWidget(this)) {
    for (const PaintSettingsSection section : allPaintSettingsSections()) {
        m_sections->addRow(symbolName(section), title(section));
        m_panes->addWidget(new PaneFrame(m_panes));
    }
    m_sections->fitWidth(sideWidth - 2 * Style::grid);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, Style::grid, 0, 0);
    layout->setSpacing(Style::grid);
    // Other than a margin, it is at the right where text begins there.
    layout->addSpacing(Style::grid);
    layout->addWidget(m_sections);
    layout->addWidget(m_panes, 1);
    auto* closing = new QAction(this);
    closing->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)});
    connect(closing, &QAction::triggered, this, &QWidget::close, Qt::QueuedConnection);
    addAction(closing);
    connect(m_sections, &SideList::currentRowChanged, this, &PaintSettingsView::choose);
    m_sections->setCurrentRow(0);
    m_sections->setFocus();
}

void PaintSettingsView::showSection(PaintSettingsSection section) {
    m_sections->setCurrentRow(static_cast<int>(section));
}

void PaintSettingsView::choose(int row) {
    if (row < 0) return;
    m_section = static_cast<PaintSettingsSection>(row);
    auto* frame = static_cast<QScrollArea*>(m_panes->widget(row));
    if (frame->widget() == nullptr) {
        frame->setWidget(new SettingsPane(m_section, m_context));
        frame->updateGeometry();
    }
    m_panes->setCurrentIndex(row);
    shownPane()->refresh();
}

SettingsPane* PaintSettingsView::shownPane() const {
    return static_cast<SettingsPane*>(
        static_cast<QScrollArea*>(m_panes->currentWidget())->widget());
}

bool PaintSettingsView::event(QEvent* event) {
    // What is stored may have changed behind the window's back.
    if (event->type() == QEvent::WindowActivate) shownPane()->refresh();
    return QWidget::event(event);
}

void PaintSettingsView::paintEvent(QPaintEvent*) {
    paintSide(*this, m_sections->width() + 2 * Style::grid);
}

} // namespace quillabrae::shell
