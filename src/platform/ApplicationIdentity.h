// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

/// The names that the desktop knows the program by. The files in packaging/ bear them too.
namespace quillabrae::platform {

/// Of the desktop file, the bus name, the windows, the icon.
inline constexpr QLatin1StringView applicationId("com.orvik.Quillabrae");
/// The MIME type of a project.
inline constexpr QLatin1StringView projectType("application/x-quillabrae-project");

} // namespace quillabrae::platform
