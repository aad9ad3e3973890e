// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidget.h"

#include "canvas/CanvasCursors.h"
#include "canvas/CanvasDisplay.h"
#include "canvas/CanvasOverlays.h"
#include "canvas/CanvasRenderer.h"
#include "canvas/CanvasShadow.h"
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidgetAccessible.h"
#include "canvas/CanvasWidgetInput.h"
#include "canvas/CanvasWidgetScroller.h"
#include "canvas/CanvasWidgetText.h"
#include "canvas/DraftOverlay.h"
#include "canvas/FrameUnderOverlays.h"
#include "canvas/QtCanvasTimers.h"
#include "canvas/StoreCanvasHost.h"
#include "raster/PixelMemory.h"
#include "store/ProjectStore.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGestureEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPinchGesture>
#include <QTabletEvent>
#include <QTimerEvent>

#include <cmath>

namespace quillabrae::canvas {
namespace {

/// The workspace around the canvas: the window's colour, a shade darker.
QColor workspaceColor(const QPalette& palette) {
    constexpr int shade = 112;
    return palette.color(QPalette::Window).darker(shade);
}

} // namespace

/// Everything behind the widget, and the display that the canvas reports to.
struct CanvasWidget::Parts final : CanvasDisplay {
    Parts(CanvasWidget& widget, store::ProjectStore& store)
        : widget(widget),
          host(store),
          scroller(widget),
          view(host, timers, pointer),
          input(host, view, scroller, pointer) {}

    void repaintCanvasPixels(const QRect& rect) override {
        const CanvasFrame frame = view.frame(widget.viewport()->devicePixelRatioF());
        const QRect changed = viewportRect(frame, rect);
        under.invalidate(changed);
        widget.viewport()->update(changed);
    }
    void repaintOverlays() override {
        const QRegion before = overlays.region() | drafts;
        prepareOverlays();
        widget.viewport()->update(before | overlays.region() | drafts);
    }
    void repaintViewport() override {
        under.invalidateAll();
        prepareOverlays();
        widget.viewport()->update();
    }

    /// Takes in what lies over the canvas now, and sets the ants in motion or stops them.
    void prepareOverlays() {
        const bool hasProject = view.hasProject();
        drafts = draftRegion(view, widget.canvasOriginInViewport());
        overlays.prepare(
            hasProject ? view.frame(widget.viewport()->devicePixelRatioF()) : CanvasFrame(),
            hasProject ? view.overlays() : OverlayState());
        if (!overlays.hasAnts()) {
            under.drop();
            marching.stop();
        } else if (!marching.isActive() && !hasReducedMotion) {
            marching.start(static_cast<int>(std::lround(marchingAntsInterval * 1000.0)), &widget);
        }
    }
    int phase() const {
        return hasReducedMotion ? 0
                                : marchingAntsPhase(static_cast<double>(clock.elapsed()) / 1000.0);
    }

    CanvasWidget& widget;
    StoreCanvasHost host;
    CanvasWidgetPointer pointer;
    CanvasWidgetScroller scroller;
    QtCanvasTimers timers;
    CanvasView view;
    CanvasWidgetInput input;
    CanvasRenderer renderer;
    FrameUnderOverlays under;
    CanvasOverlays overlays;
    /// Where the drafts show.
    QRegion drafts;
    QBasicTimer marching;
    QElapsedTimer clock;
    bool hasReducedMotion = false;
};

CanvasWidget::CanvasWidget(store::ProjectStore& store, QWidget* parent)
    : QAbstractScrollArea(parent), m_store(store), m_parts(std::make_unique<Parts>(*this, store)) {
    // Ahead of anything that makes it known.
    CanvasWidgetAccessible::install();
    setAccessibleName(tr("Canvas"));
    setFrameShape(QFrame::NoFrame);
    // A picture is the same in languages that run from right to left.
    setLayoutDirection(Qt::LeftToRight);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    // The right button draws.
    setContextMenuPolicy(Qt::PreventContextMenu);
    viewport()->setMouseTracking(true);
    viewport()->setTabletTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->grabGesture(Qt::PinchGesture);
    m_parts->clock.start();
    m_parts->view.setDisplay(m_parts.get());
    m_parts->view.setScroller(&m_parts->scroller);
    feedCanvas(m_parts->view, store, *this);
    connect(&store, &store::ProjectStore::settingsChanged, this, &CanvasWidget::updateCursor);
    connect(&store, &store::ProjectStore::activeProjectChanged, this, &CanvasWidget::updateCursor);
    updateCursor();
    m_announcer = new CanvasAnnouncer(*this, store);
}

CanvasWidget::~CanvasWidget() = default;

CanvasView& CanvasWidget::view() {
    return m_parts->view;
}

QPointF CanvasWidget::canvasOriginInViewport() const {
    return m_parts->view.canvasOriginInViewport(viewport()->devicePixelRatioF());
}

void CanvasWidget::paintEvent(QPaintEvent* event) {
    Parts& parts = *m_parts;
    const raster::PixelRefusals refusals;
    parts.prepareOverlays();
    QPainter painter(viewport());
    if (!parts.overlays.hasAnts()) {
        paintCanvas(painter, event->rect());
    } else {
        const QImage& under = parts.under.image(
            viewport()->size(), viewport()->devicePixelRatioF(), event->region(),
            [this](QPainter& target, const QRect& rect) { paintCanvas(target, rect); });
        parts.overlays.paintAnts(painter, under, event->region(), parts.phase(),
                                 palette().color(QPalette::Highlight));
    }
    const QColor accent = palette().color(QPalette::Highlight);
    parts.overlays.paintMarks(painter, accent);
    paintDrafts(painter, parts.view, canvasOriginInViewport(), accent);
    // A layer that is missing would look like an empty one.
    refusals.throwIfAny();
}

/// The canvas and the workspace around it.
void CanvasWidget::paintCanvas(QPainter& painter, const QRect& exposed) const {
    const model::PaintProject* project = m_store.activeProject();
    if (project == nullptr) return painter.fillRect(exposed, workspaceColor(palette()));
    CanvasFrame frame = m_parts->view.frame(viewport()->devicePixelRatioF());
    frame.secondaryLabelColor = palette().color(QPalette::PlaceholderText);
    const QRectF canvas(frame.canvasOrigin,
                        QSizeF(project->canvasWidth, project->canvasHeight) * frame.zoomScale);
    if (!canvas.contains(exposed)) {
        painter.fillRect(exposed, workspaceColor(palette()));
        paintCanvasShadow(painter, canvas, exposed);
    }
    m_parts->renderer.paint(painter, frame, exposed);
}

void CanvasWidget::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_parts->marching.timerId())
        return QAbstractScrollArea::timerEvent(event);
    viewport()->update(m_parts->overlays.antsRegion());
}

void CanvasWidget::setReducedMotion(bool isReduced) {
    m_parts->hasReducedMotion = isReduced;
    m_parts->marching.stop();
    m_parts->repaintOverlays();
}

void CanvasWidget::resizeEvent(QResizeEvent*) {
    m_parts->scroller.updateRanges();
    m_parts->view.setViewportSize(viewport()->size());
}

void CanvasWidget::scrollContentsBy(int, int) {
    m_parts->scroller.barsMoved();
    m_parts->repaintViewport();
}

bool CanvasWidget::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::NativeGesture:
            return m_parts->input.nativeGesture(*static_cast<QNativeGestureEvent*>(event));
        case QEvent::Gesture:
            return gestureEvent(*static_cast<QGestureEvent*>(event));
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
            return penEvent(*static_cast<QTabletEvent*>(event));
        case QEvent::Leave:
            m_parts->input.leave();
            break;
        default:
            break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

bool CanvasWidget::gestureEvent(QGestureEvent& event) {
    const auto* pinch = static_cast<QPinchGesture*>(event.gesture(Qt::PinchGesture));
    if (pinch == nullptr) return false;
    const QPointF center = viewport()->mapFromGlobal(pinch->centerPoint());
    return m_parts->input.pinch(*pinch, center);
}

bool CanvasWidget::penEvent(QTabletEvent& event) {
    event.setAccepted(m_parts->input.tablet(event));
    updateCursor();
    return event.isAccepted();
}

void CanvasWidget::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(m_parts->input.mousePress(*event));
    updateCursor();
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event) {
    event->setAccepted(m_parts->input.mouseMove(*event));
    updateCursor();
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* event) {
    event->setAccepted(m_parts->input.mouseRelease(*event));
    updateCursor();
}

void CanvasWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    // In the text of a draft it takes a word; elsewhere it is a press like any other.
    if (event->button() == Qt::LeftButton && m_parts->input.doubleClick(*event)) return;
    mousePressEvent(event);
}

void CanvasWidget::wheelEvent(QWheelEvent* event) {
    event->setAccepted(m_parts->input.wheel(*event));
}

/// What is written goes to the text, not to the window's shortcuts.
bool CanvasWidget::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const DraftGestures& drafts = m_parts->view.drafts();
        const bool isEscape = key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier;
        if ((drafts.hasText() && isTextKey(key)) ||
            (isEscape && (drafts.hasText() || drafts.hasShape())) ||
            m_parts->input.isKeyboardPointerKey(key)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void CanvasWidget::inputMethodEvent(QInputMethodEvent* event) {
    if (!m_parts->view.drafts().hasText()) return event->ignore();
    applyInputMethod(m_parts->view.textDraft(), *event);
}

QVariant CanvasWidget::inputMethodQuery(Qt::InputMethodQuery query) const {
    const bool isWriting = m_parts->view.drafts().hasText();
    if (query == Qt::ImEnabled) return isWriting;
    if (!isWriting) return QAbstractScrollArea::inputMethodQuery(query);
    const TextEditing& editing = m_parts->view.textDraft().editing();
    switch (query) {
        case Qt::ImCursorRectangle:
            return draftCaretRect(m_parts->view, canvasOriginInViewport());
        case Qt::ImSurroundingText:
            return editing.text();
        case Qt::ImCursorPosition:
            return editing.caret();
        case Qt::ImCurrentSelection:
            return editing.selectedText();
        default:
            return QAbstractScrollArea::inputMethodQuery(query);
    }
}

/// Tab belongs to a text that is being written.
bool CanvasWidget::focusNextPrevChild(bool isNext) {
    return !m_parts->view.drafts().hasText() && QAbstractScrollArea::focusNextPrevChild(isNext);
}

void CanvasWidget::keyPressEvent(QKeyEvent* event) {
    event->setAccepted(m_parts->input.keyPress(*event));
    updateCursor();
    // Whether the tool is pressed is no news to the store.
    m_announcer->mayHaveChanged();
}

void CanvasWidget::keyReleaseEvent(QKeyEvent* event) {
    event->setAccepted(m_parts->input.keyRelease(*event));
    updateCursor();
}

void CanvasWidget::focusOutEvent(QFocusEvent* event) {
    m_parts->input.focusOut();
    updateCursor();
    QAbstractScrollArea::focusOutEvent(event);
}

void CanvasWidget::hideEvent(QHideEvent* event) {
    // A window that is only minimised comes back.
    if (!event->spontaneous()) m_parts->view.disappear();
    QAbstractScrollArea::hideEvent(event);
}

void CanvasWidget::updateCursor() {
    if (!m_store.hasActiveProject()) return viewport()->unsetCursor();
    const model::PaintTool tool = m_parts->view.selectedTool();
    const CanvasWidgetInput& input = m_parts->input;
    PointerIntent intent = PointerIntent::useTool;
    if (input.isPanning() || (tool == model::PaintTool::pan && input.isDragging())) {
        intent = PointerIntent::panning;
    } else if (input.isReadyToPan()) {
        intent = PointerIntent::readyToPan;
    } else if (m_parts->pointer.modifiers().option) {
        intent = PointerIntent::useToolBackwards;
    }
    const bool isBusy = input.isDragging() || input.isPanning() || input.isReadyToPan();
    const GrabTarget target = isBusy ? GrabTarget() : input.grabTarget();
    // What is held keeps its cursor.
    if (input.isDragging() && intent != PointerIntent::panning) return;
    viewport()->setCursor(grabCursor(target).value_or(toolCursor(tool, intent)));
}

std::optional<CanvasHandle> CanvasWidget::handleAt(QPointF place) const {
    if (m_parts->input.isDragging()) return std::nullopt;
    const CanvasView& view = m_parts->view;
    const DraftHandle* handle =
        view.grabTargetAt(m_parts->scroller.clipBounds().topLeft() + place).draftHandle;
    if (handle == nullptr) return std::nullopt;
    QRectF mark = handle->mark(view.drafts().box(handle->draft));
    mark.translate(canvasOriginInViewport() -
                   QPointF(selectionHandleGutter, selectionHandleGutter));
    return CanvasHandle{QCoreApplication::translate("DraftHandle", handle->tooltipTitle),
                        QCoreApplication::translate("DraftHandle", handle->tooltipText),
                        mark.toAlignedRect()};
}

} // namespace quillabrae::canvas
