// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QVBoxLayout;

namespace quillabrae::shell {

/// A card over the canvas with a small heading and whatever `content` lays out under it. Presses on
/// it do not reach the canvas.
class FloatingPanel : public QWidget {
    Q_OBJECT

public:
    explicit FloatingPanel(const QString& heading, QWidget* parent = nullptr);

    QVBoxLayout* content() const { return m_content; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QVBoxLayout* m_content;
};

} // namespace quillabrae::shell
