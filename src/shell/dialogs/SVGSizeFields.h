// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/SVGImportService.h"

#include <QSizeF>

namespace quillabrae::shell {

/// The two linked numbers of the dialog that asks how large an SVG is drawn: whole pixels, at least
/// 1, in the ratio of the natural size.
class SVGSizeFields {
public:
    explicit SVGSizeFields(QSizeF naturalSize);

    double width() const { return m_width; }
    double height() const { return m_height; }
    /// What the user typed into one field; the other follows.
    void editWidth(double width);
    void editHeight(double height);
    /// The height is worked out from the width once more.
    persistence::SVGImportSizeResult accepted() const;

private:
    double heightFor(double width) const;

    double m_ratio;
    double m_width;
    double m_height;
};

} // namespace quillabrae::shell
