// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/controls/BodyScroller.h"

class QVBoxLayout;

namespace quillabrae::shell {

struct TourPage;
struct TourPoint;

/// One page of the tour: its heading, its figure and its points.
class TourPageView final : public ScrolledBody {
    Q_OBJECT

public:
    explicit TourPageView(const TourPage& page, QWidget* parent = nullptr);

private:
    void addWidePicture(const TourPage& page, QVBoxLayout& column);
    void addTallPicture(const TourPage& page, QVBoxLayout& column);
    QWidget* makePicture(const TourPage& page, QSize room);
    /// The points in as many columns.
    QWidget* makePoints(const TourPage& page, int columns);
    QWidget* makePoint(const TourPoint& point);
};

} // namespace quillabrae::shell
