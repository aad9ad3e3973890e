// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasAnchor.h"

#include <QWidget>

class QButtonGroup;
class QComboBox;

namespace quillabrae::shell {

/// The name of an anchor as a menu shows it: "Bottom Left".
QString title(model::CanvasAnchor anchor);

/// Nine buttons in the places of the anchors, and beside them a list of their names.
class AnchorPicker final : public QWidget {
    Q_OBJECT

public:
    explicit AnchorPicker(model::CanvasAnchor anchor, QWidget* parent = nullptr);

    model::CanvasAnchor anchor() const;

Q_SIGNALS:
    /// The user has chosen another one.
    void anchorChosen(model::CanvasAnchor anchor);

private:
    QButtonGroup* m_buttons;
    QComboBox* m_names;
};

} // namespace quillabrae::shell
