// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/Workspace.h"

#include "canvas/CanvasWidget.h"
#include "shell/controls/FloatingPanel.h"
#include "shell/editor/ColorStack.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/looks/Style.h"

#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr int margin = 12;

FloatingPanel* makeColorPanel(store::ProjectStore& store, QWidget* parent) {
    auto* panel = new FloatingPanel(QStringLiteral("Colors"), parent);
    panel->content()->addWidget(new ColorStack(store, panel));
    return panel;
}

} // namespace

Workspace::Workspace(store::ProjectStore& store, QWidget* parent)
    : QWidget(parent),
      m_canvas(new canvas::CanvasWidget(store, this)),
      m_tools(new ToolsPalette(store, this)),
      m_colors(makeColorPanel(store, this)) {
    setFocusProxy(m_canvas);
}

void Workspace::focusCanvas() {
    m_canvas->setFocus();
}

void Workspace::resizeEvent(QResizeEvent*) {
    m_canvas->setGeometry(rect());
    m_tools->setGeometry({QPoint(margin, margin), m_tools->sizeHint()});
    const QRect tools = m_tools->geometry();
    QRect colors(margin, tools.bottom() + 1 + Style::grid, tools.width(),
                 m_colors->sizeHint().height());
    // Beside the tools where the window is too low for both.
    if (colors.bottom() > height() - margin) {
        colors.moveTopLeft({tools.right() + 1 + Style::grid, margin});
    }
    m_colors->setGeometry(colors);
}

} // namespace quillabrae::shell
