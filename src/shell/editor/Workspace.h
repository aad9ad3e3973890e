// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/panels/PanelButtons.h"
#include "shell/panels/PanelPlacement.h"

#include <QWidget>

#include <vector>

namespace quillabrae::canvas {
class CanvasWidget;
}

namespace quillabrae::shell {

class FloatingPanel;

/// The canvas with the panels that float over it, each in a corner of its own until it is moved.
/// Panels stay inside, whatever the size of the window.
class Workspace final : public QWidget {
    Q_OBJECT

public:
    explicit Workspace(PanelContext context, QWidget* parent = nullptr);

    /// Gives the keyboard to the canvas.
    void focusCanvas();
    /// Whether things are to stand still, for people who do not want motion.
    void setReducedMotion(bool isReduced);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Floating {
        FloatingPanel* panel;
        PanelPlace place;
    };

    void addPanel(FloatingPanel* panel, PanelCorner corner);
    QSize room() const;
    void shareHeight();
    void placePanels();
    void movePanel(FloatingPanel* panel, QPoint topLeft);

    canvas::CanvasWidget* m_canvas;
    std::vector<Floating> m_panels;
    FloatingPanel* m_history;
    FloatingPanel* m_layers;
};

} // namespace quillabrae::shell
