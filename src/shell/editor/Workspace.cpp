// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/Workspace.h"

#include "canvas/CanvasWidget.h"
#include "shell/controls/FloatingPanel.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/editor/ColorStack.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/panels/HistoryPanel.h"
#include "shell/panels/LayersPanel.h"

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

FloatingPanel* makeColorPanel(store::ProjectStore& store, QWidget* parent) {
    auto* panel = new FloatingPanel(QStringLiteral("Colors"), parent);
    panel->content()->addWidget(new ColorStack(store, panel));
    return panel;
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

Workspace::Workspace(PanelContext context, QWidget* parent)
    : QWidget(parent), m_canvas(new canvas::CanvasWidget(context.store, this)) {
    tellWhatHandlesDo(*m_canvas);
    setFocusProxy(m_canvas);
    addPanel(new ToolsPalette(context.store, this), PanelCorner::topLeft);
    addPanel(makeColorPanel(context.store, this), PanelCorner::bottomLeft);
    m_history = new HistoryPanel(context, this);
    m_layers = new LayersPanel(std::move(context), this);
    for (FloatingPanel* panel : {m_history, m_layers}) panel->setFixedWidth(listPanelWidth);
    addPanel(m_history, PanelCorner::topRight);
    addPanel(m_layers, PanelCorner::bottomRight);
}

void Workspace::addPanel(FloatingPanel* panel, PanelCorner corner) {
    m_panels.push_back({panel, {corner, {panelMargin, panelMargin}}});
    connect(panel, &FloatingPanel::sizeChanged, this, &Workspace::placePanels);
    connect(panel, &FloatingPanel::moveRequested, this,
            [this, panel](QPoint topLeft) { movePanel(panel, topLeft); });
}

void Workspace::focusCanvas() {
    m_canvas->setFocus();
}

void Workspace::setReducedMotion(bool isReduced) {
    m_canvas->setReducedMotion(isReduced);
}

void Workspace::resizeEvent(QResizeEvent*) {
    m_canvas->setGeometry(rect());
    shareHeight();
    placePanels();
}

/// History and layers fill the right side between them.
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

void Workspace::placePanels() {
    for (const auto& [panel, place] : m_panels) {
        const QSize wanted =
            panel->sizeHint().expandedTo(panel->minimumSize()).boundedTo(panel->maximumSize());
        panel->setGeometry(panelRect(place, wanted, room()));
    }
}

void Workspace::movePanel(FloatingPanel* panel, QPoint topLeft) {
    const QRect place = insideRoom({topLeft, panel->size()}, room());
    panel->setGeometry(place);
    std::ranges::find(m_panels, panel, &Floating::panel)->place = panelPlace(place, room());
}

} // namespace quillabrae::shell
