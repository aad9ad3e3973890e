// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "replay/SequenceStep.h"

#include <QStringList>

namespace quillabrae::replay {

/// Floating pixels float on, or stand on their layer, unless the line is one that takes them away.
void floatingPixelsStayOrComeDown(const Step& step, QStringList& broken);

} // namespace quillabrae::replay
