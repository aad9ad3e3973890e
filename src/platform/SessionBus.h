// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::platform {

/// Whether there is a session bus to talk to. Ask before using one: looking for a bus where there
/// is none would start one.
bool hasSessionBus();

} // namespace quillabrae::platform
