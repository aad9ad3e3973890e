// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class LabeledSlider;

/// The options of the selected tool; shows only what that tool heeds.
class ToolOptions final : public QWidget {
    Q_OBJECT

public:
    explicit ToolOptions(store::ProjectStore& store, QWidget* parent = nullptr);

private:
    void showSettings();

    store::ProjectStore& m_store;
    LabeledSlider* m_brushSize;
    LabeledSlider* m_hardness;
};

} // namespace quillabrae::shell
