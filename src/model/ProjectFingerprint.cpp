// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ProjectFingerprint.h"

#include <cmath>
#include <initializer_list>

namespace quillabrae::model {
namespace {

bool allFinite(std::initializer_list<double> values) {
    for (const double value : values) {
        if (!std::isfinite(value)) return false;
    }
    return true;
}

bool hasJsonForm(const PaintProject& project) {
    if (!allFinite({project.canvasWidth, project.canvasHeight, project.resolutionDPI}))
        return false;
    if (const auto& s = project.pixelSelection; s && !allFinite({s->x, s->y, s->width, s->height}))
        return false;
    if (const auto& f = project.floatingSelection; f && !allFinite({f->width, f->height}))
        return false;
    for (const PaintLayer& layer : project.layers) {
        if (!std::isfinite(layer.opacity)) return false;
    }
    return true;
}

} // namespace

std::optional<ProjectFingerprint> ProjectFingerprint::of(const PaintProject& project) {
    if (!hasJsonForm(project)) return std::nullopt;
    PaintProject normalized = project;
    normalized.fileURL.reset();
    normalized.lastModified = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    return ProjectFingerprint(std::move(normalized));
}

} // namespace quillabrae::model
