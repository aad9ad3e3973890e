// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StartRequest.h"
#include "shell/app/Deployment.h"
#include "shell/app/Program.h"

#include <QApplication>

int main(int argc, char** argv) {
    const QByteArray token = quillabrae::platform::activationTokenOfThisStart();
    QApplication application(argc, argv);
    return quillabrae::shell::runProgram(application, quillabrae::shell::Deployment::ofThisBuild(),
                                         token);
}
