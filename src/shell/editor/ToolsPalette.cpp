// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ToolsPalette.h"

#include "shell/controls/IconButton.h"
#include "store/ProjectStore.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr int columns = 2;
constexpr int buttonExtent = 28;

IconButton* makeButton(model::PaintTool tool, QWidget* parent) {
    auto* button = new IconButton({.symbolName = model::symbolName(tool),
                                   .title = model::title(tool),
                                   .help = model::helpDescription(tool),
                                   .extent = buttonExtent,
                                   .tooltipPlacement = HoverTooltipPlacement::trailing},
                                  parent);
    button->setObjectName(model::rawText(tool));
    button->setCheckable(true);
    return button;
}

} // namespace

ToolsPalette::ToolsPalette(store::ProjectStore& store, QWidget* parent)
    : FloatingPanel(tr("Tools"), parent), m_store(store), m_buttons(new QButtonGroup(this)) {
    addButtons();
    connect(m_buttons, &QButtonGroup::idClicked, this, [this](int id) {
        m_store.editSettings([id](model::PaintAppSettings& settings) {
            settings.selectedTool = static_cast<model::PaintTool>(id);
        });
    });
    connect(&m_store, &store::ProjectStore::settingsChanged, this, &ToolsPalette::showSelection);
    showSelection();
}

void ToolsPalette::addButtons() {
    auto* grid = new QGridLayout;
    grid->setSpacing(4);
    int index = 0;
    for (const model::PaintTool tool : paletteTools) {
        IconButton* button = makeButton(tool, this);
        m_buttons->addButton(button, static_cast<int>(tool));
        grid->addWidget(button, index / columns, index % columns);
        ++index;
    }
    content()->addLayout(grid);
}

void ToolsPalette::showSelection() {
    const auto selected = static_cast<int>(m_store.settings().selectedTool);
    if (m_buttons->checkedId() == selected) return;
    if (QAbstractButton* button = m_buttons->button(selected)) {
        button->setChecked(true);
        return;
    }
    // A tool that has no button: none is marked.
    m_buttons->setExclusive(false);
    if (QAbstractButton* checked = m_buttons->checkedButton()) checked->setChecked(false);
    m_buttons->setExclusive(true);
}

} // namespace quillabrae::shell
