// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"

#include <optional>
#include <string_view>
#include <unordered_map>

namespace quillabrae::model {

/// Turns base64 texts into PNG bytes such that equal texts share one buffer. A history that is read
/// back so holds each of its layers once, as it did before it was written; a text that was met
/// before is compared with what it gave then and takes no memory at all.
class PngInterner {
public:
    /// Nothing for a text that is not base64.
    std::optional<PngBytes> intern(std::string_view base64Text);

private:
    std::unordered_multimap<std::size_t, PngBytes> m_known;
};

} // namespace quillabrae::model
