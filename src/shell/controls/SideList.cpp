// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/SideList.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/TextSize.h"
#include "shell/controls/VisualPart.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"

#include <QEvent>
#include <QHash>
#include <QPainter>
#include <QStyle>
#include <QStyledItemDelegate>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr int rowHeight = 34;
constexpr int padding = 10;
constexpr int symbolRole = Qt::UserRole;

class SideRow final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const int text = option.fontMetrics.horizontalAdvance(index.data().toString());
        return {padding + Style::smallIcon + Style::grid + text + padding,
                TextSize::rowHeight(*option.widget, rowHeight)};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (index.flags().testFlag(Qt::ItemIsSelectable))
            paintRow(*painter, option, index);
        else
            paintHeading(*painter, option, index);
        painter->restore();
    }
    void forgetIcons() { m_icons.clear(); }

private:
    void paintRow(QPainter& painter, const QStyleOptionViewItem& option,
                  const QModelIndex& index) const {
        const QRectF face = QRectF(option.rect).adjusted(0.5, 1.5, -0.5, -1.5);
        const bool isChosen = option.state.testFlag(QStyle::State_Selected);
        if (isChosen || option.state.testFlag(QStyle::State_MouseOver)) {
            painter.setPen(isChosen ? QPen(Style::accent(option.palette)) : QPen(Qt::NoPen));
            painter.setBrush(isChosen ? Style::accentWash(option.palette)
                                      : Style::hover(option.palette));
            painter.drawRoundedRect(face, Style::cornerRadius, Style::cornerRadius);
        }
        const QString symbolName = index.data(symbolRole).toString();
        QIcon& icon = m_icons[symbolName];
        if (icon.isNull()) icon = Symbols::icon(symbolName);
        QRect place(option.rect.left() + padding, 0, Style::smallIcon, Style::smallIcon);
        place.moveTop(option.rect.top() + (option.rect.height() - place.height()) / 2);
        icon.paint(&painter, QStyle::visualRect(option.direction, option.rect, place));
        QRect text = option.rect;
        text.setLeft(place.right() + 1 + Style::grid);
        painter.setPen(option.palette.color(QPalette::WindowText));
        painter.drawText(QStyle::visualRect(option.direction, option.rect, text),
                         Qt::AlignVCenter | Qt::TextSingleLine, index.data().toString());
        if (option.state.testFlag(QStyle::State_HasFocus))
            paintFocusRing(painter, face, option.palette);
    }
    static void paintHeading(QPainter& painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
        QFont font = option.font;
        font.setWeight(QFont::DemiBold);
        painter.setFont(font);
        // It cannot be chosen, but it is no less to be read.
        QPalette palette = option.palette;
        palette.setCurrentColorGroup(QPalette::Active);
        painter.setPen(Style::mutedText(palette));
        const QRect text = option.rect.adjusted(padding, 0, 0, -Style::grid / 2);
        painter.drawText(QStyle::visualRect(option.direction, option.rect, text),
                         Qt::AlignBottom | Qt::TextSingleLine, index.data().toString());
    }

    mutable QHash<QString, QIcon> m_icons;
};

} // namespace

SideList::SideList(const QString& accessibleName, QWidget* parent) : QListWidget(parent) {
    setAccessibleName(accessibleName);
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    setItemDelegate(new SideRow(this));
}

void SideList::addRow(const QString& symbolName, const QString& title) {
    auto* item = new QListWidgetItem(title, this);
    item->setData(symbolRole, symbolName);
}

void SideList::addHeading(const QString& title) {
    auto* item = new QListWidgetItem(title, this);
    item->setFlags(Qt::NoItemFlags);
}

void SideList::fitWidth(int least) {
    TextSize::follow(*this, [this, least] {
        int width = TextSize::scaled(least, *this);
        for (int row = 0; row < count(); ++row)
            width = std::max(width, sizeHintForIndex(model()->index(row, 0)).width());
        setFixedWidth(width);
    });
}

void SideList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        if (auto* look = dynamic_cast<SideRow*>(itemDelegate())) look->forgetIcons();
    }
    QListWidget::changeEvent(event);
}

void paintSide(QWidget& window, int width) {
    QPainter painter(&window);
    const QPalette& palette = window.palette();
    painter.fillRect(visualPart(window, {0, 0, width, window.height()}), Style::raised(palette));
    painter.fillRect(visualPart(window, {width - 1, 0, 1, window.height()}), Style::line(palette));
}

} // namespace quillabrae::shell
