// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"
#include "shell/controls/FloatingPanel.h"

#include <functional>
#include <vector>

class QAbstractButton;
class QHBoxLayout;
class QLineEdit;
class QSpinBox;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class GradientSlider;
class HueWheel;
struct ColorComponent;

/// The primary and the secondary colour: two swatches, a wheel, common colours, and on demand every
/// number of the primary colour.
class ColorPanel final : public FloatingPanel {
    Q_OBJECT

public:
    explicit ColorPanel(store::ProjectStore& store, QWidget* parent = nullptr);

    bool isExpanded() const { return !m_advanced->isHidden(); }

private:
    struct Row {
        const ColorComponent* component;
        GradientSlider* slider;
        QSpinBox* number;
    };

    QWidget* makeBase();
    QWidget* makeCommonColors();
    QWidget* makeAdvanced();
    QWidget* makeRow(const ColorComponent& component);
    QWidget* makeHexRow();
    void setExpanded(bool isExpanded);
    void setPrimary(const model::ColorValue& color);
    void applyHex();
    void showColor();
    void showRow(const Row& row) const;

    store::ProjectStore& m_store;
    model::ColorValue m_shown;
    HueWheel* m_wheel = nullptr;
    QAbstractButton* m_more = nullptr;
    QLineEdit* m_hex = nullptr;
    std::vector<Row> m_rows;
    QWidget* m_advanced = nullptr;
};

} // namespace quillabrae::shell
