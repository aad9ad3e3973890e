// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractScrollArea>

#include <memory>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::canvas {

/// The scrolling canvas of the editor window, standing on the store's active project. Turns Qt
/// events into the canvas's input model and paints; it decides nothing.
class CanvasWidget : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit CanvasWidget(store::ProjectStore& store, QWidget* parent = nullptr);
    ~CanvasWidget() override;
};

} // namespace quillabrae::canvas
