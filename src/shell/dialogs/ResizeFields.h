// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/DialogResults.h"

#include <QSizeF>

namespace quillabrae::shell {

/// What the dialog resizes: the picture with its pixels, or the room around them.
enum class ResizeDialogMode { image, canvas };
/// Whether the new size is told as a part of the old one or as numbers of its own.
enum class ResizeBasis { percentage, absolute };
enum class ResolutionUnit { pixelsPerInch, pixelsPerCentimeter };
enum class PrintUnit { inches, centimeters };

/// What the dialog starts with; the canvas in pixels.
struct ResizeDialogRequest {
    ResizeDialogMode mode = ResizeDialogMode::image;
    QSizeF canvasSize;
    double resolutionDPI = 96.0;
    model::CanvasAnchor anchor = model::CanvasAnchor::center;

    friend bool operator==(const ResizeDialogRequest&, const ResizeDialogRequest&) = default;
};

struct ResizeDialogResponse {
    ResizeDialogMode mode = ResizeDialogMode::image;
    store::ResizeDialogResult result;

    friend bool operator==(const ResizeDialogResponse&, const ResizeDialogResponse&) = default;
};

/// The linked numbers of the dialog that resizes. The size in pixels is the truth, of which the
/// print size is a view; the resolution is held for an inch.
class ResizeFields {
public:
    explicit ResizeFields(const ResizeDialogRequest& request);

    ResizeDialogMode mode() const { return m_mode; }
    void setMode(ResizeDialogMode mode) { m_mode = mode; }
    ResizeBasis basis() const { return m_basis; }
    /// Going back to percentages, the percentage counts again.
    void setBasis(ResizeBasis basis);
    bool maintainsAspectRatio() const { return m_maintainsAspectRatio; }
    void setMaintainsAspectRatio(bool maintains) { m_maintainsAspectRatio = maintains; }
    ResolutionUnit resolutionUnit() const { return m_resolutionUnit; }
    void setResolutionUnit(ResolutionUnit unit) { m_resolutionUnit = unit; }
    PrintUnit printUnit() const { return m_printUnit; }
    void setPrintUnit(PrintUnit unit) { m_printUnit = unit; }
    model::CanvasAnchor anchor() const { return m_anchor; }
    void setAnchor(model::CanvasAnchor anchor) { m_anchor = anchor; }

    double percentage() const { return m_percentage; }
    double width() const { return m_width; }
    double height() const { return m_height; }
    double resolutionDPI() const { return m_resolutionDPI; }
    /// In the chosen units.
    double shownResolution() const;
    double printWidth() const;
    double printHeight() const;

    /// What the user has put into one field; those that hang on it follow.
    void editPercentage(double percentage);
    void editWidth(double width);
    void editHeight(double height);
    void editShownResolution(double resolution);
    void editPrintWidth(double width);
    void editPrintHeight(double height);

    /// Whole pixels of at least 1, and at least 1 pixel for an inch.
    ResizeDialogResponse response() const;

private:
    void applyPercentage();
    /// Pixels for one of the chosen units of length.
    double pixelsPerPrintUnit() const;

    QSizeF m_canvasSize;
    double m_ratio;
    ResizeDialogMode m_mode;
    ResizeBasis m_basis = ResizeBasis::percentage;
    double m_percentage = 100.0;
    double m_width;
    double m_height;
    double m_resolutionDPI;
    ResolutionUnit m_resolutionUnit = ResolutionUnit::pixelsPerInch;
    PrintUnit m_printUnit = PrintUnit::inches;
    bool m_maintainsAspectRatio = true;
    model::CanvasAnchor m_anchor;
};

} // namespace quillabrae::shell
