// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/ResizeFields.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr double centimetersPerInch = 2.54;

double wholePixels(double value) {
    return std::max(std::round(value), 1.0);
}

} // namespace

ResizeFields::ResizeFields(const ResizeDialogRequest& request)
    : m_canvasSize(request.canvasSize),
      m_ratio(std::max(request.canvasSize.width(), 1.0) /
              std::max(request.canvasSize.height(), 1.0)),
      m_mode(request.mode),
      m_width(request.canvasSize.width()),
      m_height(request.canvasSize.height()),
      m_resolutionDPI(request.resolutionDPI),
      m_anchor(request.anchor) {}

void ResizeFields::setBasis(ResizeBasis basis) {
    m_basis = basis;
    applyPercentage();
}

void ResizeFields::applyPercentage() {
    if (m_basis != ResizeBasis::percentage) return;
    m_width = wholePixels(m_canvasSize.width() * m_percentage / 100.0);
    m_height = wholePixels(m_canvasSize.height() * m_percentage / 100.0);
}

double ResizeFields::shownResolution() const {
    return m_resolutionUnit == ResolutionUnit::pixelsPerInch ? m_resolutionDPI
                                                             : m_resolutionDPI / centimetersPerInch;
}

double ResizeFields::pixelsPerPrintUnit() const {
    const double perInch = std::max(m_resolutionDPI, 1.0);
    return m_printUnit == PrintUnit::inches ? perInch : perInch / centimetersPerInch;
}

double ResizeFields::printWidth() const {
    return m_width / pixelsPerPrintUnit();
}

double ResizeFields::printHeight() const {
    return m_height / pixelsPerPrintUnit();
}

void ResizeFields::editPercentage(double percentage) {
    m_percentage = percentage;
    applyPercentage();
}

void ResizeFields::editWidth(double width) {
    m_width = width;
    if (m_maintainsAspectRatio) m_height = wholePixels(width / m_ratio);
}

void ResizeFields::editHeight(double height) {
    m_height = height;
    if (m_maintainsAspectRatio) m_width = wholePixels(height * m_ratio);
}

void ResizeFields::editShownResolution(double resolution) {
    m_resolutionDPI = m_resolutionUnit == ResolutionUnit::pixelsPerInch
                          ? resolution
                          : resolution * centimetersPerInch;
}

void ResizeFields::editPrintWidth(double width) {
    editWidth(wholePixels(width * pixelsPerPrintUnit()));
}

void ResizeFields::editPrintHeight(double height) {
    editHeight(wholePixels(height * pixelsPerPrintUnit()));
}

ResizeDialogResponse ResizeFields::response() const {
    return {
        m_mode,
        {wholePixels(m_width), wholePixels(m_height), std::max(m_resolutionDPI, 1.0), m_anchor}};
}

} // namespace quillabrae::shell
