// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/WindowRole.h"

#include <QCoreApplication>

#include <array>

namespace quillabrae::shell {
namespace {

struct Row {
    const char* identifier = "";
    const char* title = "";
    WindowTraits::Frame frame = WindowTraits::Frame::resizable;
    QSize size;
    QSize minimumSize;
};

constexpr std::array<Row, windowRoleCount> rows{{
    {"Quillabrae.Editor", "", WindowTraits::Frame::resizable, {1180, 820}, {1100, 760}},
    {"",
     QT_TRANSLATE_NOOP("Window", "Welcome to Quillabrae"),
     WindowTraits::Frame::none,
     {480, 632},
     {}},
    {"Quillabrae.PluginLibrary",
     QT_TRANSLATE_NOOP("Window", "Plugin Library"),
     WindowTraits::Frame::resizable,
     {980, 680},
     {820, 560}},
    {"Quillabrae.PaintNetQuickStart",
     QT_TRANSLATE_NOOP("Window", "Paint.NET Quick Start"),
     WindowTraits::Frame::fixed,
     {760, 610},
     {}},
    {"Quillabrae.Settings",
     QT_TRANSLATE_NOOP("Window", "Settings"),
     WindowTraits::Frame::resizable,
     {720, 500},
     {600, 400}},
}};

} // namespace

WindowTraits windowTraits(WindowRole role) {
    const Row& row = rows.at(static_cast<std::size_t>(role));
    return {QString::fromLatin1(row.identifier), QCoreApplication::translate("Window", row.title),
            row.frame, row.size, row.minimumSize};
}

QString editorWindowTitle(const QString& projectTitle, const QString& version) {
    const QString base =
        QStringLiteral("Quillabrae v") + (version.isEmpty() ? QStringLiteral("1.0.0") : version);
    return projectTitle.isEmpty() ? base : projectTitle + QStringLiteral(" - ") + base;
}

} // namespace quillabrae::shell
