// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/welcome/RecentList.h"

#include "shell/app/WindowCoordinator.h"
#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"
#include "shell/welcome/RecentRow.h"
#include "store/ProjectStore.h"

#include <QLabel>
#include <QVBoxLayout>

namespace quillabrae::shell {

RecentList::RecentList(store::ProjectStore& store, WindowCoordinator& windows, QWidget* parent)
    : QScrollArea(parent), m_store(store), m_windows(windows) {
    setAccessibleName(tr("Recent projects"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
}

void RecentList::showRecents(const std::vector<WelcomeContent::Recent>& recents) {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (const WelcomeContent::Recent& recent : recents) layout->addWidget(makeRow(recent));
    if (recents.empty()) layout->addWidget(makeEmptyRecents());
    layout->addStretch();
    // The former rows may be in the middle of the click that led here.
    if (QWidget* former = takeWidget()) former->deleteLater();
    setWidget(content);
    content->setAutoFillBackground(false);
}

QWidget* RecentList::makeRow(const WelcomeContent::Recent& recent) {
    auto* row = new RecentRow(recent);
    connect(
        row, &QAbstractButton::clicked, this,
        [this, project = recent.project] { m_windows.openRecent(project); }, Qt::QueuedConnection);
    connect(
        row, &RecentRow::removeRequested, this,
        [this, project = recent.project] { m_store.removeRecent(project); }, Qt::QueuedConnection);
    return row;
}

QWidget* RecentList::makeEmptyRecents() {
    auto* empty = new QWidget;
    auto* layout = new QVBoxLayout(empty);
    layout->setContentsMargins(0, 3 * Style::grid, 0, 3 * Style::grid);
    layout->setSpacing(Style::grid / 2);
    for (QLabel* label :
         {Labels::body(tr("No recent projects yet"), empty),
          Labels::muted(tr("Saved and opened projects will appear here."), empty)}) {
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignHCenter);
        layout->addWidget(label);
    }
    return empty;
}

} // namespace quillabrae::shell
