// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QScrollArea;

namespace quillabrae::shell {

/// Shows at the left and right edge of a scroller without scroll bars that there is more: its
/// content fades out there, beneath an arrow. Lies over the scroller and takes no input.
class ScrollHints final : public QWidget {
    Q_OBJECT

public:
    /// Owned by `scroller`.
    explicit ScrollHints(QScrollArea& scroller);

    bool hasMoreAtLeft() const;
    bool hasMoreAtRight() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// At the edge that text in that direction begins at.
    bool hasMoreAt(Qt::LayoutDirection side) const;
    void paintHint(QPainter& painter, Qt::LayoutDirection side) const;

    QScrollArea& m_scroller;
};

} // namespace quillabrae::shell
