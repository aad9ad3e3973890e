// SPDX-License-Identifier: GPL-3.0-or-later
#include "SyntheticImages.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <random>

namespace quillabrae::bench {
namespace {

std::uint8_t clampedByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
}

} // namespace

raster::RasterImage syntheticPhoto(int side) {
    auto image = raster::RasterImage::uninitialized(side, side);
    std::minstd_rand random(1);
    std::normal_distribution<double> noise(0.0, 2.5);
    std::vector<double> noiseTable(1 << 16);
    for (double& value : noiseTable) value = noise(random);
    for (int y = 0; y < side; ++y) {
        std::uint8_t* row = image.mutableRow(y);
        for (int x = 0; x < side; ++x) {
            const double shade = 110 + 60 * std::sin(x * 0.0021) * std::cos(y * 0.0017) +
                                 25 * std::sin(x * 0.031 + y * 0.017);
            const double texture = 12 * std::sin(x * 0.37) * std::sin(y * 0.29 + x * 0.011);
            for (int c = 0; c < 3; ++c)
                row[4 * x + c] = clampedByte(shade * (1.0 - 0.12 * c) + texture +
                                             noiseTable[random() & 0xffffU]);
            row[4 * x + 3] = 255;
        }
    }
    return image;
}

raster::RasterImage syntheticScreenshot(int side) {
    raster::RasterImage image(side, side);
    QImage target = image.paintTarget();
    target.fill(QColor(240, 241, 243));
    QPainter painter(&target);
    std::minstd_rand random(2);
    const auto upTo = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (int i = 0; i < 60; ++i) {
        const QRect panel(upTo(side), upTo(side), 200 + upTo(900), 80 + upTo(700));
        painter.fillRect(panel, QColor::fromHsv(upTo(360), 30 + upTo(120), 255 - upTo(120)));
        painter.setPen(QColor(120, 120, 130));
        painter.drawRect(panel);
        for (int y = panel.top() + 12; y + 14 < panel.bottom(); y += 22)
            for (int x = panel.left() + 10; x + 12 < panel.right();) {
                const int width = 2 + upTo(6);
                painter.fillRect(x, y + upTo(3), width, 6 + upTo(6), QColor(40, 40, 46));
                x += width + 2 + upTo(4) + (upTo(6) == 0 ? 12 : 0);
            }
    }
    return image;
}

raster::RasterImage syntheticDrawing(int side) {
    raster::RasterImage image(side, side);
    QImage target = image.paintTarget();
    QPainter painter(&target);
    painter.setRenderHint(QPainter::Antialiasing);
    std::minstd_rand random(3);
    const auto upTo = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (int i = 0; i < 4; ++i) {
        QPainterPath path(QPointF(upTo(side), upTo(side)));
        for (int j = 0; j < 3; ++j)
            path.cubicTo(upTo(side), upTo(side), upTo(side), upTo(side), upTo(side), upTo(side));
        QColor color = QColor::fromHsv(upTo(360), 200, 220, 60 + upTo(195));
        painter.setPen(QPen(color, 4 + upTo(30), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(path);
    }
    for (int i = 0; i < 8; ++i) {
        const QPointF centre(upTo(side), upTo(side));
        const double radius = 40 + upTo(160);
        QRadialGradient soft(centre, radius);
        const QColor color = QColor::fromHsv(upTo(360), 220, 240, 200);
        soft.setColorAt(0, color);
        soft.setColorAt(1, QColor(color.red(), color.green(), color.blue(), 0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(soft);
        painter.drawEllipse(centre, radius, radius);
    }
    return image;
}

} // namespace quillabrae::bench
