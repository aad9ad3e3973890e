// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Translations.h"
#include "shell/app/Application.h"
#include "shell/looks/OutlinedStyle.h"
#include "shell/looks/Style.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryFile>

#include <gmock/gmock.h>

namespace {

/// One that has room for everything, and beside it one of the smallest that are in use.
constexpr auto screens = R"({"screens": [
    {"name": "large", "x": 0, "y": 0, "width": 3840, "height": 2160,
     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
    {"name": "small", "x": 3840, "y": 0, "width": 1024, "height": 600,
     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

} // namespace

int main(int argc, char* argv[]) {
    QTemporaryFile described(QDir::tempPath() + QStringLiteral("/quillabrae-screens-XXXXXX.json"));
    if (!described.open()) return 1;
    described.write(screens);
    described.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + described.fileName().toLocal8Bit());
    quillabrae::shell::Application application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(new quillabrae::shell::OutlinedStyle);
    quillabrae::shell::Style::apply(quillabrae::shell::ColorScheme::light);
    const quillabrae::platform::Translations english({});
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
