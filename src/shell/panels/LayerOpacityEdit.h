// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUuid>

#include <optional>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// A change of the selected layer's opacity that is seen while it is made and recorded once.
class LayerOpacityEdit {
public:
    explicit LayerOpacityEdit(store::ProjectStore& store) : m_store(store) {}

    /// Shows the selected layer at an opacity between 0 and 1.
    void show(double opacity);
    /// Records what is shown, unless something else has come between.
    void settle();

private:
    struct Shown {
        QUuid layerID;
        double opacity = 1.0;
    };

    store::ProjectStore& m_store;
    std::optional<Shown> m_shown;
};

} // namespace quillabrae::shell
