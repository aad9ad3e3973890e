// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileChooserPortal.h"

#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

TEST(FileChooserPortal, MatchesLettersOfEitherCaseAndNothingElseOfIt) {
    EXPECT_EQ(inAnyLetterCase(QStringLiteral("*.png")), QStringLiteral("*.[pP][nN][gG]"));
    EXPECT_EQ(inAnyLetterCase(QStringLiteral("*.JP2")), QStringLiteral("*.[jJ][pP]2"));
    EXPECT_EQ(inAnyLetterCase(QStringLiteral("*")), QStringLiteral("*"));
    EXPECT_EQ(inAnyLetterCase(QString()), QString());
}

TEST(FileChooserPortal, NamesNoWindowWhereItKnowsNoName) {
    QWindow window;
    EXPECT_EQ(portalNameOf(&window), QString());
    EXPECT_EQ(portalNameOf(nullptr), QString());
}

TEST(FileChooserPortal, WithoutABusIsUnavailableOnceItWasAsked) {
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    int refusals = 0;
    FileChooserPortal portal;
    QObject::connect(&portal, &FileChooserPortal::unavailable, [&] { ++refusals; });
    portal.ask({});
    EXPECT_EQ(refusals, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return refusals > 0; }));
    QTest::qWait(10);
    EXPECT_EQ(refusals, 1);
    if (!address.isNull()) qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    if (!runtime.isNull()) qputenv("XDG_RUNTIME_DIR", runtime);
}

} // namespace
} // namespace quillabrae::platform
