// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintAppSettings.h"
#include "model/PaintHistory.h"
#include "model/PaintImage.h"
#include "model/PaintProject.h"
#include "model/PaintStroke.h"
#include "model/RecentProject.h"

#include <cstdint>
#include <random>

namespace quillabrae::tests {

/// Records of random content within what their types allow, the odd cases more often than in life.
/// The same seed gives the same records.
class RandomRecords {
public:
    explicit RandomRecords(std::uint32_t seed) : m_engine(seed) {}

    bool coin() { return below(2) == 1; }
    /// 0 to `limit` - 1.
    int below(int limit);
    /// Finite, of any magnitude.
    double number();
    QString text();
    QUuid uuid();
    QUrl url();
    /// To the second.
    QDateTime date();
    model::PngBytes png(int maximumSize = 400);

    model::ColorValue color();
    model::PixelSelection selection();
    model::FloatingPixelSelection floating();
    model::PaintLayer layer();
    model::PaintProject project();
    model::PaintStroke stroke();
    model::PaintImage image();
    model::RecentProject recent();
    model::PaintHistoryState history(int maximumEntries = 5);
    model::PaintAppSettings settings();

private:
    std::mt19937 m_engine;
};

} // namespace quillabrae::tests
