// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/DialogResults.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;

namespace quillabrae::shell {

class SliderRow;

/// Asks for what a layer is called and how it takes part.
class LayerPropertiesDialog final : public QDialog {
    Q_OBJECT

public:
    explicit LayerPropertiesDialog(const store::LayerPropertiesDialogResult& layer,
                                   QWidget* parent = nullptr);

    store::LayerPropertiesDialogResult answer() const;

private:
    QLineEdit* m_name;
    SliderRow* m_opacity;
    QCheckBox* m_visible;
    QCheckBox* m_locked;
};

} // namespace quillabrae::shell
