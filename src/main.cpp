// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StartRequest.h"
#include "shell/app/Application.h"
#include "shell/app/Deployment.h"
#include "shell/app/Program.h"

int main(int argc, char** argv) {
    const QByteArray token = quillabrae::platform::activationTokenOfThisStart();
    quillabrae::shell::Application application(argc, argv);
    return quillabrae::shell::runProgram(application, quillabrae::shell::Deployment::ofThisBuild(),
                                         token);
}
