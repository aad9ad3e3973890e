// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

class QVBoxLayout;

namespace quillabrae::shell {

/// A wide card that does one thing when it is pressed: a symbol, a heading, a sentence, and at
/// times a line that reads like a link.
class ActionRow final : public QAbstractButton {
    Q_OBJECT

public:
    struct Face {
        QString symbolName;
        QString heading;
        QString text;
        QString link;
        QString help;
    };

    explicit ActionRow(const Face& face, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void addText(const Face& face, QVBoxLayout& lines);
};

} // namespace quillabrae::shell
