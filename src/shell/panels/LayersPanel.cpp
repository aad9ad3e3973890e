// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/LayersPanel.h"

#include "shell/controls/LabeledSlider.h"
#include "shell/panels/LayerList.h"
#include "store/ProjectLayers.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>
#include <QVBoxLayout>

#include <array>

namespace quillabrae::shell {
namespace {

using Store = store::ProjectStore;
using Context = PanelContext;

constexpr double wholePercent = 100.0;

std::optional<std::size_t> selectedLayerIndex(const Store& store) {
    const model::PaintProject* project = store.activeProject();
    if (project == nullptr) return std::nullopt;
    return store::layerIndex(*project, project->selectedLayerID);
}

bool hasProject(const Store& store) {
    return store.hasActiveProject();
}
bool hasSeveralLayers(const Store& store) {
    const model::PaintProject* project = store.activeProject();
    return project != nullptr && project->layers.size() > 1;
}
bool hasSelection(const Store& store) {
    return selectedLayerIndex(store).has_value();
}
bool hasLayerBelow(const Store& store) {
    return selectedLayerIndex(store).value_or(0) > 0;
}
bool hasLayerAbove(const Store& store) {
    const auto index = selectedLayerIndex(store);
    return index && *index + 1 < store.activeProject()->layers.size();
}

// clang-format off
constexpr std::array buttons{
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "New Layer"), "plus.square", QT_TRANSLATE_NOOP("PanelButton", "Add a new transparent layer to the project."),
                hasProject, [](const Context& c) { c.store.addLayer(); }},
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "Remove Layer"), "minus.square", QT_TRANSLATE_NOOP("PanelButton", "Remove the selected layer from the project."),
                hasSeveralLayers, [](const Context& c) { c.store.deleteSelectedLayer(); }},
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "Duplicate Layer"), "doc.on.doc", QT_TRANSLATE_NOOP("PanelButton", "Create a copy of the selected layer."),
                hasSelection, [](const Context& c) { c.store.duplicateSelectedLayer(); }},
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "Flatten Down"), "square.stack.3d.down.right", QT_TRANSLATE_NOOP("PanelButton", "Merge the selected layer into the layer immediately below it."),
                hasLayerBelow, [](const Context& c) { c.store.flattenLayerDown(c.store.activeProject()->selectedLayerID); }},
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "Move Up"), "arrow.up", QT_TRANSLATE_NOOP("PanelButton", "Move the selected layer one step higher in the stack."),
                hasLayerAbove, [](const Context& c) { c.store.moveSelectedLayer(1); }},
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "Move Down"), "arrow.down", QT_TRANSLATE_NOOP("PanelButton", "Move the selected layer one step lower in the stack."),
                hasLayerBelow, [](const Context& c) { c.store.moveSelectedLayer(-1); }},
    PanelButton{QT_TRANSLATE_NOOP("PanelButton", "Layer Properties"), "slider.horizontal.3", QT_TRANSLATE_NOOP("PanelButton", "Change the selected layer's name, opacity, and visibility."),
                hasSelection, [](const Context& c) { if (c.configureLayer) c.configureLayer(); }},
};
// clang-format on

} // namespace

std::span<const PanelButton> layerButtons() {
    return buttons;
}

LayersPanel::LayersPanel(PanelContext context, QWidget* parent)
    : FloatingPanel(tr("Layers"), parent),
      m_store(context.store),
      m_opacityEdit(context.store),
      m_opacity(new LabeledSlider(
          {tr("Opacity"), tr("Sets how much of the selected layer shows, in percent.")}, {0, 100},
          this)) {
    m_opacity->stretchTrack();
    content()->addWidget(new LayerList(m_store, context.configureLayer, this), 1);
    content()->addWidget(m_opacity);
    content()->addWidget(new PanelButtons(buttons, std::move(context), this));

    connect(m_opacity, &LabeledSlider::valueChosen, this,
            [this](int percent) { m_opacityEdit.show(percent / wholePercent); });
    connect(m_opacity, &LabeledSlider::valueSettled, this, [this] { m_opacityEdit.settle(); });
    connect(&m_store, &Store::activeProjectChanged, this, &LayersPanel::showOpacity);
    connect(&m_store, &Store::openProjectsChanged, this, &LayersPanel::showOpacity);
    connect(&m_store, &Store::projectChanged, this, &LayersPanel::showOpacity);
    showOpacity();
}

void LayersPanel::showOpacity() {
    const auto layer = m_store.selectedLayerForProperties();
    m_opacity->setEnabled(layer.has_value());
    m_opacity->showValue(layer ? layer->opacity * wholePercent : wholePercent);
}

} // namespace quillabrae::shell
