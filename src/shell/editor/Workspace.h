// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/CommandTable.h"
#include "shell/panels/PanelPlacement.h"

#include <QWidget>

#include <functional>
#include <vector>

class QKeyEvent;

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
    /// `configureLayer` opens the properties of the selected layer.
    Workspace(const CommandContext& context, std::function<void()> configureLayer,
              QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;
    /// Gives the keyboard to the canvas.
    void focusCanvas();
    /// Whether things are to stand still, for people who do not want motion.
    void setReducedMotion(bool isReduced);
    /// Whether a key belongs to the canvas wherever the keyboard is in the window: Escape to a
    /// draft, and the arrow keys, except to a text that is being typed.
    bool isCanvasKey(const QKeyEvent& key) const;
    /// Gives the canvas a key that nothing else had a use for; accepts it where it had one.
    void giveKeyToCanvas(QKeyEvent& key);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Floating {
        FloatingPanel* panel = nullptr;
        PanelPlace place;
        /// Where it stands until it is moved.
        PanelPlace home;

        bool isAtHome() const { return place == home; }
    };

    /// `corner` is where it stands while text runs from left to right.
    void addPanel(FloatingPanel* panel, PanelCorner corner);
    void showProject();
    QSize room() const;
    void shareHeight();
    QSize fittingSize(const FloatingPanel& panel) const;
    QRect beside(const FloatingPanel& other, QRect panel) const;
    Floating& floating(const FloatingPanel* panel);
    void placePanels();
    void movePanel(FloatingPanel* panel, QPoint topLeft);

    const store::ProjectStore& m_store;
    canvas::CanvasWidget* m_canvas;
    QWidget* m_empty;
    bool m_isGivingKey = false;
    std::vector<Floating> m_panels;
    FloatingPanel* m_tools = nullptr;
    FloatingPanel* m_colors = nullptr;
    FloatingPanel* m_history;
    FloatingPanel* m_layers;
};

} // namespace quillabrae::shell
