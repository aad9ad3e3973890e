// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PngBytes.h"

namespace quillabrae::model {

PngBytes::PngBytes(QByteArray bytes)
    : m_buffer(bytes.isEmpty() ? nullptr : std::make_shared<const QByteArray>(std::move(bytes))) {}

std::span<const std::uint8_t> PngBytes::bytes() const {
    if (!m_buffer) return {};
    return {reinterpret_cast<const std::uint8_t*>(m_buffer->constData()), size()};
}

bool operator==(const PngBytes& a, const PngBytes& b) {
    if (a.m_buffer == b.m_buffer) return true;
    return a.m_buffer && b.m_buffer && *a.m_buffer == *b.m_buffer;
}

} // namespace quillabrae::model
