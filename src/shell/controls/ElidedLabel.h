// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace quillabrae::shell {

/// One line of plain text that ends in an ellipsis where it is longer than its room.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillabrae::shell
