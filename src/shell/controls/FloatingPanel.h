// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace quillabrae::shell {

class IconButton;

/// A card over the canvas with a small heading and whatever `content` lays out under it. It is
/// dragged by its heading and folds up to it. Where it is made lower than it needs, the content
/// scrolls. Presses on it do not reach the canvas.
class FloatingPanel : public QWidget {
    Q_OBJECT

public:
    explicit FloatingPanel(const QString& heading, QWidget* parent = nullptr);

    QVBoxLayout* content() const { return m_content; }
    bool isCollapsed() const { return m_body->isHidden(); }
    void setCollapsed(bool isCollapsed);
    /// The height that the panel has while it is not collapsed; that of its content unless set.
    void setExpandedHeight(int height);
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The heading is being dragged; where the panel's top left is meant to go, in its parent.
    void moveRequested(QPoint topLeft);
    /// The panel asks for another size.
    void sizeChanged();

protected:
    /// To be called when a part of the content has been shown or hidden.
    void fitContent();
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;

private:
    bool isOnHeading(QPoint at) const;

    QString m_heading;
    IconButton* m_fold;
    QWidget* m_header;
    QVBoxLayout* m_content;
    QWidget* m_body;
    std::optional<int> m_expandedHeight;
    /// Where the heading is held.
    std::optional<QPoint> m_grip;
};

} // namespace quillabrae::shell
