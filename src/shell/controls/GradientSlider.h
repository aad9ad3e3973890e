// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGradient>
#include <QSlider>

namespace quillabrae::shell {

/// A slider whose track shows what each place on it stands for. A press takes the handle there.
class GradientSlider final : public QSlider {
    Q_OBJECT

public:
    explicit GradientSlider(QWidget* parent = nullptr);

    /// The track's colours from the least value to the greatest.
    void setTrack(const QGradientStops& stops);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int valueAt(double x) const;

    QGradientStops m_track;
};

} // namespace quillabrae::shell
