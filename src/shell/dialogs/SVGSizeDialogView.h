// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/SVGSizeFields.h"

#include <QDialog>

#include <optional>

namespace quillabrae::shell {

class NumberField;

/// Asks how large an SVG is drawn.
class SVGSizeDialogView final : public QDialog {
    Q_OBJECT

public:
    explicit SVGSizeDialogView(QSizeF naturalSize, QWidget* parent = nullptr);

    /// Asks and waits; nothing when the user does not want the picture.
    static std::optional<persistence::SVGImportSizeResult> ask(QSizeF naturalSize, QWidget* parent);

    persistence::SVGImportSizeResult answer() const { return m_fields.accepted(); }

private:
    void showFields(const NumberField* edited);

    SVGSizeFields m_fields;
    NumberField* m_width;
    NumberField* m_height;
};

} // namespace quillabrae::shell
