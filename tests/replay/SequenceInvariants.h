// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "replay/SequenceStep.h"

#include <QStringList>

namespace quillabrae::replay {

/// What must hold after each line of any script. A sentence for each thing that does not; its first
/// word is the rule's name.
QStringList brokenRules(const Step& step);

/// What must hold between the work that the recovery file holds and what a start makes of it.
QStringList brokenByRestart(const Moment& before, const Moment& after);

} // namespace quillabrae::replay
