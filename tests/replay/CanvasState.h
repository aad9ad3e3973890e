// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>

namespace quillabrae::replay {

class Session;

/// Zoom, scrolling, pointer, running gesture and selection of the canvas.
QJsonObject canvasState(Session& session);

} // namespace quillabrae::replay
