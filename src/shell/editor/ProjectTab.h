// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintProject.h"

#include <QAbstractButton>
#include <QPixmap>
#include <QTimer>
#include <QUuid>

namespace quillabrae::shell {

class IconButton;

/// One open project in the tab bar: its picture, its name, a mark while it is unsaved, and a close
/// button. A click selects it; the middle button closes it.
class ProjectTab final : public QAbstractButton {
    Q_OBJECT

public:
    struct Look {
        QString title;
        bool isActive = false;
        bool isUnsaved = false;

        friend bool operator==(const Look&, const Look&) = default;
    };

    explicit ProjectTab(const QUuid& projectID, QWidget* parent = nullptr);

    QUuid projectID() const { return m_projectID; }
    void setLook(const Look& look);
    bool isActive() const { return m_look.isActive; }
    /// The room for the picture, in device pixels.
    QSize thumbnailRoom() const;
    void setThumbnail(const QImage& image);
    QSize sizeHint() const override;

Q_SIGNALS:
    void closeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    /// Where a part stands that is at `part` while text runs from left to right.
    void paintFace(QPainter& painter) const;
    void paintThumbnail(QPainter& painter) const;
    void paintTitle(QPainter& painter) const;

    QUuid m_projectID;
    Look m_look;
    QPixmap m_thumbnail;
    IconButton* m_close;
};

} // namespace quillabrae::shell
