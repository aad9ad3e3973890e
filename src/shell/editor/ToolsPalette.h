// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintTool.h"
#include "shell/controls/FloatingPanel.h"

#include <array>

class QButtonGroup;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// The tools that have a button, row by row from the top.
inline constexpr std::array paletteTools{
    model::PaintTool::rectangleSelect,
    model::PaintTool::moveSelectedPixels,
    model::PaintTool::lassoSelect,
    model::PaintTool::moveSelection,
    model::PaintTool::ellipseSelect,
    model::PaintTool::zoom,
    model::PaintTool::magicWand,
    model::PaintTool::pan,
    model::PaintTool::paintBucket,
    model::PaintTool::gradient,
    model::PaintTool::paintbrush,
    model::PaintTool::eraser,
    model::PaintTool::pencil,
    model::PaintTool::colorPicker,
    model::PaintTool::cloneStamp,
    model::PaintTool::recolor,
    model::PaintTool::text,
    model::PaintTool::lineCurve,
    model::PaintTool::shapes,
};

/// Two columns of tools; the store's selected one is marked.
class ToolsPalette final : public FloatingPanel {
    Q_OBJECT

public:
    explicit ToolsPalette(store::ProjectStore& store, QWidget* parent = nullptr);

private:
    void addButtons();
    void showSelection();

    store::ProjectStore& m_store;
    QButtonGroup* m_buttons;
};

} // namespace quillabrae::shell
