// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/DialogResults.h"

#include <QDialog>

namespace quillabrae::shell {

class SliderRow;

/// Asks how far the layer is turned and how large it becomes.
class RotateZoomDialog final : public QDialog {
    Q_OBJECT

public:
    explicit RotateZoomDialog(QWidget* parent = nullptr);

    store::RotateZoomDialogResult answer() const;

private:
    SliderRow* m_angle;
    SliderRow* m_zoom;
};

} // namespace quillabrae::shell
