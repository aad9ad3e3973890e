// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintProject.h"

#include "model/PastedImage.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quillabrae::model {

PaintProject PaintProject::fromPastedImage(const PastedImage& image, int number) {
    const QString name = QCoreApplication::translate("PaintProject", "Pasted Image");
    PaintLayer layer;
    layer.id = QUuid::createUuid();
    layer.name = name;
    layer.bitmapPNGData = image.pngData;

    PaintProject project;
    project.id = QUuid::createUuid();
    project.title = number == 1 ? name : QStringLiteral("%1 %2").arg(name).arg(number);
    project.canvasWidth = image.width;
    project.canvasHeight = image.height;
    project.selectedLayerID = layer.id;
    project.isCanvasSelected = true;
    project.pixelSelection = PixelSelection{0.0, 0.0, image.width, image.height, std::nullopt};
    project.layers = {std::move(layer)};
    project.lastModified = QDateTime::currentDateTimeUtc();
    return project;
}

const PaintLayer* PaintProject::selectedLayer() const {
    const auto found = std::ranges::find(layers, selectedLayerID, &PaintLayer::id);
    return found == layers.end() ? nullptr : &*found;
}

PaintLayer* PaintProject::selectedLayer() {
    return const_cast<PaintLayer*>(std::as_const(*this).selectedLayer());
}

QString PaintProject::displayName() const {
    if (!fileURL) return title;
    const QString name = fileURL->adjusted(QUrl::StripTrailingSlash).fileName();
    const QString stem = QFileInfo(name).completeBaseName();
    // ".quillabrae" is all extension and "/" has no name at all.
    if (!stem.isEmpty()) return stem;
    return name.isEmpty() ? title : name;
}

} // namespace quillabrae::model
