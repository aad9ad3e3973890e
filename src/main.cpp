// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/app/Deployment.h"
#include "shell/app/Program.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    return quillabrae::shell::runProgram(application, quillabrae::shell::Deployment::ofThisBuild());
}
