// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QIcon>

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

    explicit ActionRow(Face face, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    int lineCount() const { return m_face.link.isEmpty() ? 2 : 3; }

    Face m_face;
    QIcon m_icon;
};

} // namespace quillabrae::shell
