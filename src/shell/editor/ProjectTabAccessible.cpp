// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ProjectTabAccessible.h"

#include "shell/editor/ProjectTab.h"

namespace quillabrae::shell {
namespace {

QAccessibleInterface* make(const QString&, QObject* object) {
    auto* tab = qobject_cast<ProjectTab*>(object);
    // Qt's cache of accessible interfaces owns what is returned.
    return tab == nullptr ? nullptr : new ProjectTabAccessible(tab);
}

} // namespace

ProjectTabAccessible::ProjectTabAccessible(ProjectTab* tab)
    : QAccessibleWidget(tab, QAccessible::PageTab) {}

ProjectTab* ProjectTabAccessible::tab() const {
    return qobject_cast<ProjectTab*>(object());
}

QAccessible::State ProjectTabAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = tab()->isActive();
    return state;
}

QStringList ProjectTabAccessible::actionNames() const {
    return QStringList(pressAction()) + QAccessibleWidget::actionNames();
}

void ProjectTabAccessible::doAction(const QString& actionName) {
    if (actionName == pressAction())
        tab()->click();
    else
        QAccessibleWidget::doAction(actionName);
}

void ProjectTabAccessible::install() {
    QAccessible::installFactory(make);
}

} // namespace quillabrae::shell
