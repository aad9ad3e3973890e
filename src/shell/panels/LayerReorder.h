// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUuid>

#include <optional>
#include <vector>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// One drag of a layer through the active project's stack. The stack changes while the pointer
/// moves, and the drop records it once, however many rows were passed.
class LayerReorder {
public:
    explicit LayerReorder(store::ProjectStore& store) : m_store(store) {}

    std::optional<QUuid> draggingLayerID() const { return m_draggingLayerID; }
    void start(const QUuid& layerID);
    /// The pointer is over another layer: the dragged one takes its place. Whether it moved.
    bool dropEntered(const QUuid& targetLayerID);
    /// Records the drag; nothing when none is running.
    void performDrop();
    /// Puts the stack back as it was before the drag.
    void cancel();

private:
    bool isInActiveProject() const;

    store::ProjectStore& m_store;
    std::optional<QUuid> m_draggingLayerID;
    QUuid m_projectID;
    /// The layers before the drag, bottom first.
    std::vector<QUuid> m_order;
};

} // namespace quillabrae::shell
