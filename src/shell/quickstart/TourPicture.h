// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace quillabrae::shell {

/// A picture of the program itself, light or dark as the program is. It is read when it is first
/// shown.
class TourPicture final : public QLabel {
    Q_OBJECT

public:
    /// `text` says what it shows. The picture is as large as fits `room`.
    TourPicture(const QString& name, const QString& text, QSize room, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void load();

    QString m_name;
    QSize m_room;
};

} // namespace quillabrae::shell
