// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// The canvas with the panels that float over it.
class Workspace final : public QWidget {
    Q_OBJECT

public:
    explicit Workspace(store::ProjectStore& store, QWidget* parent = nullptr);

    /// Gives the keyboard to the canvas.
    void focusCanvas();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_canvas;
    QWidget* m_tools;
    QWidget* m_colors;
};

} // namespace quillabrae::shell
