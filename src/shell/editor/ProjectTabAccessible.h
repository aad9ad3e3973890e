// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace quillabrae::shell {

class ProjectTab;

/// A project's tab as a screen reader meets it: a page tab that can be pressed.
class ProjectTabAccessible final : public QAccessibleWidget {
public:
    explicit ProjectTabAccessible(ProjectTab* tab);

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

    /// Makes tabs known by this class from now on.
    static void install();

private:
    ProjectTab* tab() const;
};

} // namespace quillabrae::shell
