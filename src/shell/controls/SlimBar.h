// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QProgressBar>

namespace quillabrae::shell {

/// How far something is: a slim bar that fills up, or, while nobody can tell, one with a piece that
/// runs to and fro.
class SlimBar final : public QProgressBar {
    Q_OBJECT

public:
    explicit SlimBar(QWidget* parent = nullptr);

    /// 0 to 1, or below 0 where nobody can tell. The piece moves on with each call.
    void showFraction(double fraction);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Where the piece is, from 0 to 1 and back.
    double swing() const;
    void fill(QPainter& painter, double start, double length, const QColor& color) const;

    QElapsedTimer m_clock;
};

} // namespace quillabrae::shell
