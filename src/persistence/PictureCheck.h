// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/RecoverySession.h"

namespace quillabrae::persistence {

/// Whether the checksums in all pictures of a session's projects and histories hold. Nothing is
/// decoded, and a picture that stands in many places is looked at once.
bool hasWholePictures(const PaintAutosaveSession& session);

} // namespace quillabrae::persistence
