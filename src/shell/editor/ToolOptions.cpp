// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ToolOptions.h"

#include "model/PaintAppSettings.h"
#include "shell/controls/LabeledSlider.h"
#include "shell/looks/Style.h"
#include "store/ProjectStore.h"

#include <QHBoxLayout>

namespace quillabrae::shell {
namespace {

using model::PaintAppSettings;
using model::PaintTool;

bool usesBrushSize(PaintTool tool) {
    return tool != PaintTool::shapes &&
           (model::drawsContinuousStroke(tool) || model::drawsFromEndpoints(tool));
}

} // namespace

ToolOptions::ToolOptions(store::ProjectStore& store, QWidget* parent)
    : QWidget(parent),
      m_store(store),
      m_brushSize(new LabeledSlider(
          {QStringLiteral("Size"), QStringLiteral("Sets the width of the mark in pixels.")},
          {1, 512}, this)),
      m_hardness(new LabeledSlider(
          {QStringLiteral("Hardness"), QStringLiteral("Sets how crisp the edge of the mark is.")},
          {0, 100}, this)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Style::grid / 2, 0, 0, 0);
    layout->setSpacing(2 * Style::grid);
    layout->addWidget(m_brushSize);
    layout->addWidget(m_hardness);

    connect(m_brushSize, &LabeledSlider::valueChosen, this, [this](int value) {
        m_store.editSettings([value](PaintAppSettings& settings) { settings.brushSize = value; });
    });
    connect(m_hardness, &LabeledSlider::valueChosen, this, [this](int value) {
        m_store.editSettings(
            [value](PaintAppSettings& settings) { settings.pencilHardness = value; });
    });
    connect(&m_store, &store::ProjectStore::settingsChanged, this, &ToolOptions::showSettings);
    showSettings();
}

void ToolOptions::showSettings() {
    const PaintAppSettings& settings = m_store.settings();
    const bool hasSize = usesBrushSize(settings.selectedTool);
    m_brushSize->showValue(settings.brushSize);
    m_hardness->showValue(settings.pencilHardness);
    m_brushSize->setVisible(hasSize);
    m_hardness->setVisible(hasSize && model::usesHardnessControl(settings.selectedTool));
}

} // namespace quillabrae::shell
