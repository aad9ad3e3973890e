// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Translations.h"
#include "shell/app/Application.h"
#include "shell/looks/OutlinedStyle.h"
#include "shell/looks/Style.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    quillabrae::shell::Application application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(new quillabrae::shell::OutlinedStyle);
    quillabrae::shell::Style::apply(quillabrae::shell::ColorScheme::light);
    const quillabrae::platform::Translations english({});
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
