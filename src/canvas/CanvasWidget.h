// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractScrollArea>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>

class QGestureEvent;
class QPainter;
class QTabletEvent;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::canvas {

class CanvasAnnouncer;
class CanvasView;

/// What a handle on the canvas does. `mark` is in the viewport's coordinates.
struct CanvasHandle {
    QString title;
    QString text;
    QRect mark;
};

/// The scrolling canvas of the editor window, standing on the store's active project. Turns Qt
/// events into the canvas's input model and paints; it decides nothing. The store outlives it.
class CanvasWidget : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit CanvasWidget(store::ProjectStore& store, QWidget* parent = nullptr);
    ~CanvasWidget() override;

    CanvasView& view();
    /// The canvas's top left corner in the viewport's coordinates, on a whole device pixel.
    QPointF canvasOriginInViewport() const;
    /// Whether the marching ants stand still, for people who do not want motion.
    void setReducedMotion(bool isReduced);
    /// The handle of a draft at a point of the viewport, if no drag is on.
    std::optional<CanvasHandle> handleAt(QPointF place) const;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Parts;

    void updateCursor();
    void paintCanvas(QPainter& painter, const QRect& exposed) const;
    bool gestureEvent(QGestureEvent& event);
    bool penEvent(QTabletEvent& event);

    store::ProjectStore& m_store;
    std::unique_ptr<Parts> m_parts;
    CanvasAnnouncer* m_announcer = nullptr;
};

} // namespace quillabrae::canvas
