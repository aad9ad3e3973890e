// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDoubleSpinBox>

namespace quillabrae::shell {

/// A field for a number without a practical upper limit, shown without needless decimals, as the
/// user's language writes it. A comma and a point both begin the decimals. Steps are whole; at
/// least 0.
class NumberField final : public QDoubleSpinBox {
    Q_OBJECT

public:
    explicit NumberField(QWidget* parent = nullptr);

    QString textFromValue(double value) const override;
    QValidator::State validate(QString& text, int& position) const override;
};

} // namespace quillabrae::shell
