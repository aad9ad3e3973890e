// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Translations.h"

#include <QGuiApplication>

#include <gmock/gmock.h>

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const quillabrae::platform::Translations english({});
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
