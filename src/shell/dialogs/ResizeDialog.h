// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/dialogs/ResizeFields.h"

#include <QDialog>

#include <vector>

class QLabel;
class QVBoxLayout;

namespace quillabrae::shell {

class NumberField;

/// Asks for the new size of the picture or of the canvas around it; which of the two can be changed
/// in the dialog.
class ResizeDialog final : public QDialog {
    Q_OBJECT

public:
    explicit ResizeDialog(const ResizeDialogRequest& request, QWidget* parent = nullptr);

    ResizeDialogResponse answer() const { return m_fields.response(); }

private:
    void addModes(QVBoxLayout& column);
    void addBasis(QVBoxLayout& column);
    void addPixelSize(QVBoxLayout& column);
    void addPrintSize(QVBoxLayout& column);
    void addAnchor(QVBoxLayout& column);
    /// Has a field of the dialog follow the number behind it, and the other way round.
    void bind(NumberField* field, double (ResizeFields::*value)() const,
              void (ResizeFields::*edit)(double));
    /// Shows what the fields hold, but for the one that is being typed into.
    void refresh(const NumberField* edited = nullptr);

    struct Binding {
        NumberField* field;
        double (ResizeFields::*value)() const;
    };

    ResizeDialogRequest m_request;
    ResizeFields m_fields;
    std::vector<Binding> m_bindings;
    NumberField* m_percentage = nullptr;
    /// What follows the percentage while that is the basis.
    std::vector<NumberField*> m_lengths;
    QWidget* m_anchor = nullptr;
    QLabel* m_oldSize = nullptr;
    QLabel* m_newSize = nullptr;
    QLabel* m_printUnit = nullptr;
};

} // namespace quillabrae::shell
