// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/Workspace.h"

#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "canvas/DraftGestures.h"
#include "shell/commands/FocusedText.h"
#include "shell/controls/FloatingPanel.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/TextSize.h"
#include "shell/editor/EmptyWorkspace.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/panels/ColorPanel.h"
#include "shell/panels/HistoryPanel.h"
#include "shell/panels/LayersPanel.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr int listPanelWidth = 236;
constexpr int tallestHistory = 280;
constexpr int tallestLayers = 440;
/// The history's share of the column that it has with the layers, in percent.
constexpr int historyShare = 40;

bool hasDraft(canvas::CanvasWidget& canvas) {
    const canvas::DraftGestures& drafts = canvas.view().drafts();
    return drafts.hasText() || drafts.hasShape();
}

void tellWhatHandlesDo(canvas::CanvasWidget& canvas) {
    auto* tooltip = new HoverTooltip(canvas.viewport(), {}, HoverTooltipPlacement::below);
    tooltip->setParts([&canvas](QPoint at) -> std::optional<HoverTooltipPart> {
        const auto handle = canvas.handleAt(at);
        if (!handle) return std::nullopt;
        return HoverTooltipPart{handle->mark, {handle->title, handle->text}};
    });
}

} // namespace

Workspace::Workspace(const CommandContext& context, std::function<void()> configureLayer,
                     QWidget* parent)
    : QWidget(parent),
      m_store(context.store),
      m_canvas(new canvas::CanvasWidget(context.store, this)),
      m_empty(new EmptyWorkspace(context, this)) {
    tellWhatHandlesDo(*m_canvas);
    setFocusProxy(m_canvas);
    m_tools = new ToolsPalette(context.store, this);
    m_colors = new ColorPanel(context.store, this);
    addPanel(m_tools, PanelCorner::topLeft);
    addPanel(m_colors, PanelCorner::bottomLeft);
    const PanelContext panels{context.store, std::move(configureLayer)};
    m_history = new HistoryPanel(panels, this);
    m_layers = new LayersPanel(panels, this);
    for (FloatingPanel* panel : {m_history, m_layers})
        TextSize::setFixedWidth(*panel, listPanelWidth);
    addPanel(m_history, PanelCorner::topRight);
    addPanel(m_layers, PanelCorner::bottomRight);
    using store::ProjectStore;
    connect(&m_store, &ProjectStore::activeProjectChanged, this, &Workspace::showProject);
    connect(&m_store, &ProjectStore::openProjectsChanged, this, &Workspace::showProject);
    showProject();
}

/// Without a project there is nothing for the panels to work on.
void Workspace::showProject() {
    const bool hasProject = m_store.hasActiveProject();
    m_empty->setHidden(hasProject);
    for (const Floating& floating : m_panels) floating.panel->setVisible(hasProject);
}

void Workspace::addPanel(FloatingPanel* panel, PanelCorner corner) {
    const PanelCorner own = layoutDirection() == Qt::RightToLeft ? mirrored(corner) : corner;
    const PanelPlace home{own, {panelMargin, panelMargin}};
    m_panels.push_back({panel, home, home});
    connect(panel, &FloatingPanel::sizeChanged, this, &Workspace::placePanels);
    connect(panel, &FloatingPanel::sizeChanged, this, &QWidget::updateGeometry);
    connect(panel, &FloatingPanel::moveRequested, this,
            [this, panel](QPoint topLeft) { movePanel(panel, topLeft); });
}

/// So high that tools and colours do not cover each other.
QSize Workspace::minimumSizeHint() const {
    const int panels = m_tools->sizeHint().height() + m_colors->sizeHint().height();
    const int bar = height() - room().height();
    return {0, panels + 3 * panelMargin + bar};
}

void Workspace::focusCanvas() {
    m_canvas->setFocus();
}

void Workspace::setReducedMotion(bool isReduced) {
    m_canvas->setReducedMotion(isReduced);
}

void Workspace::resizeEvent(QResizeEvent*) {
    m_canvas->setGeometry(rect());
    QRect empty(QPoint(), m_empty->sizeHint());
    empty.moveCenter(rect().center());
    m_empty->setGeometry(empty);
    shareHeight();
    placePanels();
}

/// History and layers fill their side between them.
void Workspace::shareHeight() {
    const int space = room().height() - 3 * panelMargin;
    const int history = std::min(tallestHistory, space * historyShare / 100);
    m_history->setExpandedHeight(history);
    m_layers->setExpandedHeight(std::min(tallestLayers, space - history));
}

/// The canvas without its scroll bars, whether they show or not.
QSize Workspace::room() const {
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    return size() - QSize(bar, bar);
}

/// A panel that is higher than the room scrolls, and gets room for the bar.
QSize Workspace::fittingSize(const FloatingPanel& panel) const {
    const QSize wanted =
        panel.sizeHint().expandedTo(panel.minimumSize()).boundedTo(panel.maximumSize());
    const int highest = std::max(room().height() - 2 * panelMargin, panel.minimumSize().height());
    if (wanted.height() <= highest) return wanted;
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    return {wanted.width() + bar, highest};
}

/// Until it is moved, a panel that the room is too low for stands beside the one that is there.
QRect Workspace::beside(const FloatingPanel& other, QRect panel) const {
    if (!panel.intersects(other.geometry())) return panel;
    if (layoutDirection() == Qt::RightToLeft)
        panel.moveRight(other.geometry().left() - 1 - panelMargin);
    else
        panel.moveLeft(other.geometry().right() + 1 + panelMargin);
    return insideRoom(panel, room());
}

Workspace::Floating& Workspace::floating(const FloatingPanel* panel) {
    return *std::ranges::find(m_panels, panel, &Floating::panel);
}

void Workspace::placePanels() {
    for (const Floating& floated : m_panels) {
        const auto& [panel, place, home] = floated;
        QRect rect = panelRect(place, fittingSize(*panel), room());
        if (panel == m_colors && floated.isAtHome() && floating(m_tools).isAtHome())
            rect = beside(*m_tools, rect);
        panel->setGeometry(rect);
    }
}

void Workspace::movePanel(FloatingPanel* panel, QPoint topLeft) {
    // Colours that made way for the tools stay where they are when those are moved.
    Floating& colors = floating(m_colors);
    if (panel == m_tools && colors.isAtHome()) {
        const QRect home = panelRect(colors.home, fittingSize(*m_colors), room());
        if (home != m_colors->geometry()) colors.place = panelPlace(m_colors->geometry(), room());
    }
    const QRect place = insideRoom({topLeft, panel->size()}, room());
    panel->setGeometry(place);
    floating(panel).place = panelPlace(place, room());
}

// Keys

bool Workspace::isCanvasKey(const QKeyEvent& key) const {
    switch (key.key()) {
        case Qt::Key_Escape:
            return key.modifiers() == Qt::NoModifier && hasDraft(*m_canvas);
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            return !FocusedText::isIn(QApplication::focusWidget());
        default:
            return false;
    }
}

void Workspace::giveKeyToCanvas(QKeyEvent& key) {
    key.ignore();
    // What the canvas has no use for comes back here.
    if (m_isGivingKey || m_canvas->hasFocus() || !isCanvasKey(key)) return;
    const QScopedValueRollback giving(m_isGivingKey, true);
    QKeyEvent given(key.type(), key.key(), key.modifiers(), key.text(), key.isAutoRepeat());
    QCoreApplication::sendEvent(m_canvas, &given);
    key.setAccepted(given.isAccepted());
}

/// Enter and Escape that a panel's field has taken or left give the keyboard back to the canvas.
void Workspace::keyPressEvent(QKeyEvent* event) {
    const bool isDone = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                        event->key() == Qt::Key_Escape;
    if (isDone && !m_isGivingKey && !m_canvas->hasFocus() && !isCanvasKey(*event))
        return focusCanvas();
    QWidget::keyPressEvent(event);
}

} // namespace quillabrae::shell
