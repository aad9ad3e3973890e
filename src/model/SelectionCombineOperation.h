// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::model {

/// How a new region changes the selection that stands. It has no stored form.
enum class SelectionCombineOperation { add, subtract };

} // namespace quillabrae::model
