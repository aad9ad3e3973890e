// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ClippedTexts.h"

#include "shell/controls/ElidedLabel.h"
#include "shell/editor/ProjectTab.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QToolButton>
#include <QTreeWidget>

namespace quillabrae::shell {
namespace {

/// A view's own shortening of names that users give, and of messages with names in them.
bool isElidedOnPurpose(const QWidget& widget) {
    return qobject_cast<const ElidedLabel*>(&widget) != nullptr ||
           dynamic_cast<const ProjectTab*>(&widget) != nullptr;
}

/// The room that a label's text needs within the label's width, or its own.
QSize needOf(const QLabel& label) {
    if (!label.wordWrap()) return label.sizeHint();
    const QRect room(0, 0, label.contentsRect().width(), QWIDGETSIZE_MAX);
    const QSize words =
        label.fontMetrics().boundingRect(room, Qt::TextWordWrap, label.text()).size();
    return words + (label.size() - label.contentsRect().size());
}

/// A button may be lower than the style would have it, while its text still fits. One without a
/// text is what it is, and has only to be in its place.
QSize needOf(const QAbstractButton& button) {
    if (button.text().isEmpty()) return {};
    return {button.sizeHint().width(), button.fontMetrics().height()};
}

class Search {
public:
    explicit Search(const QWidget& window) : m_window(window) {
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisibleTo(&window) && widget->window() == &window) look(*widget);
        }
    }
    const QStringList& found() const { return m_found; }

private:
    void look(const QWidget& widget) {
        if (isElidedOnPurpose(widget)) return;
        if (const auto* label = qobject_cast<const QLabel*>(&widget))
            take(widget, label->text(), needOf(*label));
        else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
            take(widget, button->text().isEmpty() ? button->accessibleName() : button->text(),
                 needOf(*button));
        else if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
            take(widget, tabs->tabText(0), tabs->sizeHint());
        else if (const auto* menu = qobject_cast<const QComboBox*>(&widget))
            lookAtMenu(*menu);
        else if (const auto* list = qobject_cast<const QListView*>(&widget))
            lookAtList(*list);
        else if (const auto* table = qobject_cast<const QTreeWidget*>(&widget))
            lookAtTable(*table);
    }
    /// A menu of fonts and the like may shorten what is long; one of words shows the longest.
    void lookAtMenu(const QComboBox& menu) {
        if (menu.isEditable()) return;
        take(menu, menu.currentText(), {menu.minimumSizeHint().width(), 0});
    }
    void lookAtList(const QListView& list) {
        if (list.model() == nullptr || list.textElideMode() == Qt::ElideMiddle) return;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            const QModelIndex index = list.model()->index(row, 0);
            const QSize need = list.sizeHintForIndex(index);
            if (need.width() > list.viewport()->width())
                tell(list, index.data().toString(), need, list.viewport()->size());
        }
    }
    void lookAtTable(const QTreeWidget& table) {
        for (int part = 0; part < table.topLevelItemCount(); ++part) {
            const QTreeWidgetItem* section = table.topLevelItem(part);
            for (int row = 0; row < section->childCount(); ++row)
                lookAtRow(table, *section->child(row));
        }
    }
    void lookAtRow(const QTreeWidget& table, const QTreeWidgetItem& row) {
        // What a view leaves free around a text.
        constexpr int margins = 6;
        for (int column = 0; column < table.columnCount(); ++column) {
            const int need = table.fontMetrics().horizontalAdvance(row.text(column)) + margins;
            if (need > table.columnWidth(column))
                tell(table, row.text(column), {need, 0}, {table.columnWidth(column), 0});
        }
    }
    void take(const QWidget& widget, const QString& text, QSize need) {
        if (text.isEmpty()) return;
        if (need.width() > widget.width() || need.height() > widget.height())
            tell(widget, text, need, widget.size());
        else if (!roomFor(widget).contains(placeOf(widget)))
            tell(widget, text + QStringLiteral(" (place)"), placeOf(widget).size(),
                 roomFor(widget).size());
    }
    QRect placeOf(const QWidget& widget) const {
        return {widget.mapTo(&m_window, QPoint()), widget.size()};
    }
    /// What can be seen of the window there, where scrolling shows all of an area's content.
    QRect roomFor(const QWidget& widget) const {
        for (const QWidget* part = widget.parentWidget(); part != &m_window;
             part = part->parentWidget()) {
            const QWidget* area =
                part->parentWidget() ? part->parentWidget()->parentWidget() : nullptr;
            const auto* scroll = qobject_cast<const QAbstractScrollArea*>(area);
            if (scroll != nullptr && scroll->viewport() == part->parentWidget())
                return placeOf(*part);
        }
        return m_window.rect();
    }
    void tell(const QWidget& widget, const QString& text, QSize need, QSize room) {
        m_found << QStringLiteral("%1 \"%2\" needs %3 x %4, has %5 x %6")
                       .arg(QString::fromLatin1(widget.metaObject()->className()), text)
                       .arg(need.width())
                       .arg(need.height())
                       .arg(room.width())
                       .arg(room.height());
    }

    const QWidget& m_window;
    QStringList m_found;
};

} // namespace

QStringList clippedTexts(const QWidget& window) {
    return Search(window).found();
}

} // namespace quillabrae::shell
