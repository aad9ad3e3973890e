// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/TourPageView.h"

#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"
#include "shell/quickstart/TourFigures.h"
#include "shell/quickstart/TourPages.h"
#include "shell/quickstart/TourPicture.h"

#include <QGridLayout>
#include <QLabel>

namespace quillabrae::shell {
namespace {

constexpr qreal headingFactor = 1.6;
constexpr int sideMargin = 28;
constexpr int topMargin = 3 * Style::grid;
constexpr int pointColumns = 2;
constexpr QSize wideRoom{516, 316};
constexpr QSize tallRoom{244, 430};

} // namespace

TourPageView::TourPageView(const TourPage& page, QWidget* parent) : ScrolledBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(sideMargin, topMargin, sideMargin, 2 * Style::grid);
    column->setSpacing(2 * Style::grid);
    QLabel* heading = Labels::title(tourText(page.heading), headingFactor, this);
    heading->setWordWrap(true);
    column->addWidget(heading);
    switch (page.figure) {
        case TourPage::Figure::widePicture:
            addWidePicture(page, *column);
            break;
        case TourPage::Figure::tallPicture:
            addTallPicture(page, *column);
            break;
        case TourPage::Figure::tools:
            column->addWidget(TourFigures::makeTools(this));
            column->addStretch();
            column->addWidget(makePoints(page, pointColumns));
            break;
        case TourPage::Figure::shortcuts:
            column->addWidget(TourFigures::makeShortcuts(this), 1);
            column->addWidget(makePoints(page, 1));
            break;
    }
}

void TourPageView::addWidePicture(const TourPage& page, QVBoxLayout& column) {
    column.addWidget(makePicture(page, wideRoom), 0, Qt::AlignHCenter);
    column.addStretch();
    column.addWidget(makePoints(page, pointColumns));
}

void TourPageView::addTallPicture(const TourPage& page, QVBoxLayout& column) {
    auto* row = new QHBoxLayout;
    row->setSpacing(3 * Style::grid);
    row->addWidget(makePicture(page, tallRoom), 0, Qt::AlignTop);
    row->addWidget(makePoints(page, 1), 1, Qt::AlignTop);
    column.addLayout(row);
    column.addStretch();
}

QWidget* TourPageView::makePicture(const TourPage& page, QSize room) {
    return new TourPicture(QString::fromLatin1(page.pictureName), tourText(page.pictureText), room,
                           this);
}

QWidget* TourPageView::makePoints(const TourPage& page, int columns) {
    auto* points = new QWidget(this);
    auto* grid = new QGridLayout(points);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(3 * Style::grid);
    grid->setVerticalSpacing(12);
    int index = 0;
    for (const TourPoint& point : page.points) {
        grid->addWidget(makePoint(point), index / columns, index % columns, Qt::AlignTop);
        ++index;
    }
    for (int column = 0; column < columns; ++column) grid->setColumnStretch(column, 1);
    return points;
}

QWidget* TourPageView::makePoint(const TourPoint& point) {
    auto* widget = new QWidget(this);
    auto* lines = new QVBoxLayout(widget);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(2);
    lines->addWidget(Labels::title(tourText(point.caption), 1.0, widget));
    QLabel* text = Labels::muted(withShortcuts(point.text), widget);
    text->setWordWrap(true);
    lines->addWidget(text);
    return widget;
}

} // namespace quillabrae::shell
