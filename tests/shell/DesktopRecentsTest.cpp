// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RecentDocuments.h"
#include "shell/ShellTest.h"
#include "shell/app/DesktopRecents.h"

namespace quillabrae::shell {
namespace {

/// Writes down what the desktop is told.
class FakeRecentDocuments final : public platform::RecentDocuments {
public:
    void add(const QUrl& project) override { told << QStringLiteral("+") + project.fileName(); }
    void remove(const QUrl& project) override { told << QStringLiteral("-") + project.fileName(); }

    QStringList told;
};

class DesktopRecentsTest : public ShellTest {
protected:
    QStringList toldWhile(const std::function<void()>& happens) {
        documents.told.clear();
        happens();
        return documents.told;
    }
    QUrl package(const char* name) const {
        return QUrl::fromLocalFile(folder.filePath(QString::fromLatin1(name)));
    }

    FakeRecentDocuments documents;
};

TEST_F(DesktopRecentsTest, TellsOfEachUseAndOfARemoval) {
    store->rememberRecent(package("before.quillabrae"));
    const DesktopRecents recents(*store, documents);
    EXPECT_TRUE(documents.told.isEmpty());
    for (const char* name : {"a.quillabrae", "b.quillabrae", "a.quillabrae"}) {
        EXPECT_EQ(toldWhile([&] { store->rememberRecent(package(name)); }),
                  QStringList(u'+' + QString::fromLatin1(name)));
    }
    EXPECT_EQ(toldWhile([&] { store->removeRecent(store->recents().front()); }),
              QStringList(QStringLiteral("-a.quillabrae")));
    EXPECT_EQ(toldWhile([&] { store->removeRecent(store->recents().back()); }),
              QStringList(QStringLiteral("-before.quillabrae")));
}

TEST_F(DesktopRecentsTest, SaysNothingOfOneThatDropsOffTheList) {
    const DesktopRecents recents(*store, documents);
    for (int i = 1; i <= 9; ++i)
        store->rememberRecent(package(qPrintable(QStringLiteral("%1.quillabrae").arg(i))));
    EXPECT_EQ(store->recents().size(), 8U);
    EXPECT_EQ(documents.told.size(), 9);
    EXPECT_FALSE(documents.told.contains(QStringLiteral("-1.quillabrae")));
}

} // namespace
} // namespace quillabrae::shell
