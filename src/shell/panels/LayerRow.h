// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QRect>
#include <QStyledItemDelegate>

namespace quillabrae::shell {

/// The parts of a layer's row, for painting and for the pointer alike. The picture stands where a
/// line of text begins.
struct LayerRowParts {
    LayerRowParts(const QRect& row, Qt::LayoutDirection direction);

    QRect thumbnail;
    QRect name;
    QRect lock;
    QRect visibility;
};

/// Draws a layer's row: its picture on a checker, its name, its opacity unless it is whole, marks
/// for lock and visibility. Edits the name in place.
class LayerRow final : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// With letters of the usual size, in points.
    static constexpr int height = 44;
    /// With the letters of a list.
    static int heightIn(const QWidget& list);
    /// The room for the picture, in points.
    static constexpr QSize thumbnailRoom{44, 34};

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    /// To be called when the palette has changed.
    void forgetIcons();

private:
    const QIcon& icon(QIcon& cached, const char* symbolName) const;
    void paintThumbnail(QPainter& painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const;
    void paintText(QPainter& painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const;
    void paintMarks(QPainter& painter, const QStyleOptionViewItem& option,
                    const QModelIndex& index) const;

    mutable QIcon m_visible;
    mutable QIcon m_hidden;
    mutable QIcon m_locked;
};

} // namespace quillabrae::shell
