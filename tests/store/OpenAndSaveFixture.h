// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreTest.h"

namespace quillabrae::store {

class OpenAndSave : public StoreTest {
protected:
    const QString boat = QStringLiteral("boat.quillabrae");

    void addLayer(ProjectStore& store) {
        store.editActiveProject([&](model::PaintProject& project) {
            model::PaintLayer layer;
            layer.id = QUuid::createUuid();
            layer.name = QStringLiteral("Ink");
            project.layers.push_back(layer);
            project.lastModified = clock.now();
        });
        store.recordHistory(*store.activeProjectID(), QStringLiteral("New Layer"),
                            QStringLiteral("plus.square"));
    }
};

} // namespace quillabrae::store
