// SPDX-License-Identifier: GPL-3.0-or-later
// Holds docs/user to the program. When the command table has changed, run this with
// QUILLABRAE_WRITE_PAGES=1 in the environment: it writes the table of keys instead of comparing it.
#include "model/PaintTool.h"
#include "shell/commands/CommandTable.h"
#include "shell/editor/ToolsPalette.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

const QDir pages(QStringLiteral(QUILLABRAE_USER_PAGES));

QString textOf(const QString& name) {
    QFile file(pages.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
    return QString::fromUtf8(file.readAll());
}

QString keysOf(const Command& command) {
    QStringList keys;
    for (const QKeySequence& key : shortcutsOf(command))
        keys.append(key.toString(QKeySequence::PortableText));
    return keys.join(QStringLiteral(", "));
}

QString tableOfKeys() {
    QString table = QStringLiteral("| menu | command | keys |\n|---|---|---|\n");
    for (const Command& command : commandTable()) {
        if (command.isDivider() || command.id == CommandID::noPluginsInstalled) continue;
        const QString menu =
            command.menu == CommandMenu::none ? QStringLiteral("toolbar") : title(command.menu);
        table +=
            QStringLiteral("| %1 | %2 | %3 |\n").arg(menu, plainTitle(command), keysOf(command));
    }
    return table;
}

TEST(UserPages, TheTableOfKeysIsThatOfTheCommands) {
    const QString page = textOf(QStringLiteral("shortcuts.md"));
    const QString begin = QStringLiteral("tells how -->\n\n");
    const qsizetype start = page.indexOf(begin) + begin.size();
    const qsizetype end = page.indexOf(QStringLiteral("\n<!-- end of the table -->"));
    ASSERT_LT(start, end);
    if (qEnvironmentVariableIsSet("QUILLABRAE_WRITE_PAGES")) {
        QFile file(pages.filePath(QStringLiteral("shortcuts.md")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write((page.left(start) + tableOfKeys() + page.mid(end)).toUtf8());
        return;
    }
    EXPECT_EQ(page.mid(start, end - start).toStdString(), tableOfKeys().toStdString());
}

TEST(UserPages, EachToolOfThePaletteIsToldWithAPicture) {
    const QString page = textOf(QStringLiteral("tools.md"));
    for (const model::PaintTool tool : paletteTools) {
        const QString title = model::title(tool);
        const QString heading = QStringLiteral("\n## ") + title + u'\n';
        ASSERT_TRUE(page.contains(heading)) << qPrintable(title);
        const QString section = page.mid(page.indexOf(heading) + heading.size());
        const QString own = section.left(section.indexOf(QStringLiteral("\n## ")));
        EXPECT_TRUE(own.contains(QStringLiteral("](images/tool-"))) << qPrintable(title);
    }
}

TEST(UserPages, WhatTheyLinkToIsThereAndNoPictureIsLeftOver) {
    static const QRegularExpression link(QStringLiteral(R"(\]\(([^)#]+)(#[^)]*)?\))"));
    QSet<QString> linked;
    for (const QString& name : pages.entryList({QStringLiteral("*.md")})) {
        auto matches = link.globalMatch(textOf(name));
        while (matches.hasNext()) {
            const QString target = matches.next().captured(1);
            EXPECT_TRUE(pages.exists(target)) << qPrintable(name + u' ' + target);
            linked.insert(target);
        }
    }
    for (const QString& picture :
         QDir(pages.filePath(QStringLiteral("images"))).entryList(QDir::Files))
        EXPECT_TRUE(linked.contains(QStringLiteral("images/") + picture)) << qPrintable(picture);
}

} // namespace
} // namespace quillabrae::shell
