// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WorkRunner.h"

namespace quillabrae::platform {

WorkRunner& directWorkRunner() {
    static DirectWorkRunner runner;
    return runner;
}

} // namespace quillabrae::platform
