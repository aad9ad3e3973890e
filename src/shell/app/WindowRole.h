// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <QString>

namespace quillabrae::shell {

/// The windows of the program; there is at most one of each.
enum class WindowRole { editor, welcome, pluginLibrary, paintNetQuickStart, settings };
constexpr int windowRoleCount = 5;

/// What a window of a role is like, whatever is in it. Sizes are of the content, in points.
struct WindowTraits {
    enum class Frame { none, fixed, resizable };

    QString identifier;
    QString title;
    Frame frame = Frame::resizable;
    QSize size;
    QSize minimumSize;
};

WindowTraits windowTraits(WindowRole role);

/// The editor window's title for a project; for an empty title that of the bare program.
QString editorWindowTitle(const QString& projectTitle, const QString& version);

} // namespace quillabrae::shell
