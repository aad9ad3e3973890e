// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ColorStack.h"

#include "shell/controls/IconButton.h"
#include "shell/editor/ColorSwatch.h"
#include "store/ProjectStore.h"

#include <utility>

namespace quillabrae::shell {
namespace {

constexpr QSize stackSize{60, 56};
constexpr QRect primaryPlace{0, 0, 36, 36};
constexpr QRect secondaryPlace{24, 20, 36, 36};
constexpr QPoint swapPlace{38, -2};
constexpr int swapExtent = 22;
constexpr int swapIconExtent = 16;

} // namespace

QColor toQColor(const model::ColorValue& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

model::ColorValue toColorValue(const QColor& color) {
    constexpr double full = 255.0;
    return {color.red() / full, color.green() / full, color.blue() / full, color.alpha() / full};
}

ColorStack::ColorStack(store::ProjectStore& store, QWidget* parent)
    : QWidget(parent),
      m_store(store),
      m_secondary(
          new ColorSwatch(tr("Secondary Color"), tr("Painted by the right mouse button."), this)),
      m_primary(
          new ColorSwatch(tr("Primary Color"), tr("Painted by the left mouse button."), this)) {
    setFixedSize(stackSize);
    m_secondary->setGeometry(secondaryPlace);
    m_primary->setGeometry(primaryPlace);
    auto* swap = new IconButton({.symbolName = QStringLiteral("arrow.triangle.2.circlepath"),
                                 .title = tr("Swap primary and secondary colors"),
                                 .help = {},
                                 .extent = swapExtent,
                                 .iconExtent = swapIconExtent,
                                 .tooltipPlacement = HoverTooltipPlacement::trailing},
                                this);
    swap->move(swapPlace);
    connect(swap, &QAbstractButton::clicked, this, &ColorStack::swapColors);
    connect(&m_store, &store::ProjectStore::settingsChanged, this, &ColorStack::showColors);
    showColors();
}

QSize ColorStack::sizeHint() const {
    return stackSize;
}

void ColorStack::swapColors() {
    m_store.editSettings([](model::PaintAppSettings& settings) {
        std::swap(settings.primaryColor, settings.secondaryColor);
    });
}

void ColorStack::showColors() {
    m_primary->setColor(toQColor(m_store.settings().primaryColor));
    m_secondary->setColor(toQColor(m_store.settings().secondaryColor));
}

} // namespace quillabrae::shell
