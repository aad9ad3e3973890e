// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/PaintAppSettings.h"
#include "model/PaintProject.h"

#include <QDateTime>
#include <QSizeF>
#include <QString>

#include <functional>
#include <optional>

namespace quillabrae::canvas {

/// What the canvas needs of the program around it: the active project, the tool settings, and the
/// places where its results go.
class CanvasHost {
public:
    virtual ~CanvasHost() = default;

    /// The active project; null when there is none.
    virtual const model::PaintProject* project() const = 0;
    /// Rewrites the active project in place. Neither stamps nor records.
    virtual void editProject(const std::function<void(model::PaintProject&)>& edit) = 0;
    virtual const model::PaintAppSettings& settings() const = 0;
    /// The present instant, for `lastModified`.
    virtual QDateTime now() const = 0;

    /// Writes the persistent zoom: screen points for each canvas pixel.
    virtual void setZoomScale(double zoomScale) = 0;
    /// The viewport's size in screen points.
    virtual void onViewportChange(QSizeF size) = 0;
    /// The pointer in canvas coordinates, or none.
    virtual void onCursorPositionChange(std::optional<model::CanvasPoint> point) = 0;
    virtual void pickPrimaryColor(const model::ColorValue& color) = 0;
    /// Runs an edit that may run out of memory. False when it did: the active project is then as it
    /// was, and the user has been told that `name` failed.
    virtual bool attempt(const QString& name, const std::function<void()>& edit) {
        static_cast<void>(name);
        edit();
        return true;
    }
    /// Appends an entry to the active project's history.
    virtual void recordHistory(const QString& title, const QString& symbolName) = 0;
};

} // namespace quillabrae::canvas
