// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::model {

/// How the lines of a text stand to each other.
enum class CanvasTextAlignment {
    left,
    center,
    right,
};

std::array<CanvasTextAlignment, 3> allCanvasTextAlignments();

QString rawText(CanvasTextAlignment value);
std::optional<CanvasTextAlignment> canvasTextAlignmentFromRawText(QStringView rawText);

} // namespace quillabrae::model
