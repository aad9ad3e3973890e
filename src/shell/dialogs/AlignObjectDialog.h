// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/Dialogs.h"

#include <QDialog>

namespace quillabrae::shell {

/// Offers the places that an object can go to, and shows each at once.
class AlignObjectDialog final : public QDialog {
    Q_OBJECT

public:
    explicit AlignObjectDialog(AlignObjectPreview preview, QWidget* parent = nullptr);
};

} // namespace quillabrae::shell
