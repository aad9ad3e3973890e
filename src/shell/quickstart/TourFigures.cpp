// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quickstart/TourFigures.h"

#include "model/PaintTool.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/controls/TextSize.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/looks/KeysInOrder.h"
#include "shell/looks/Style.h"
#include "shell/quickstart/ShortcutComparison.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace quillabrae::shell::TourFigures {
namespace {

/// The context of this file's texts, for translators.
struct TourTexts {
    Q_DECLARE_TR_FUNCTIONS(TourTexts)
};

constexpr int toolColumns = 3;
constexpr int sectionHeight = 34;
constexpr int rowHeight = 24;
constexpr int actionWidth = 152;
constexpr int thereWidth = 116;
constexpr int columnMargin = 8;

enum Column : int { actionColumn, hereColumn, thereColumn, columnCount };

QWidget* makeTool(model::PaintTool tool, QWidget* parent) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::grid);
    layout->addWidget(new SymbolLabel(model::symbolName(tool), Style::mediumIcon, row));
    layout->addWidget(Labels::body(model::title(tool), row), 1);
    return row;
}

QString keysText(const QKeySequence& keys) {
    const QString text = keys.toString(QKeySequence::NativeText);
    return text.isEmpty() || !QGuiApplication::isRightToLeft() ? text : keysInOrder(text);
}

QTreeWidgetItem* addSection(QTreeWidget& table, const QString& title) {
    auto* section =
        new QTreeWidgetItem(&table, {title, TourTexts::tr("Here"), TourTexts::tr("Paint.NET")});
    QFont font = table.font();
    font.setWeight(QFont::DemiBold);
    for (int column = actionColumn; column < columnCount; ++column) {
        section->setFont(column, font);
    }
    section->setFlags(Qt::ItemIsEnabled);
    section->setExpanded(true);
    return section;
}

void addRow(QTreeWidgetItem& section, const ComparedShortcut& shortcut) {
    QString here = keysText(shortcut.here);
    if (!shortcut.note.isEmpty())
        here += here.isEmpty() ? shortcut.note : QStringLiteral("  (%1)").arg(shortcut.note);
    if (here.isEmpty()) here = QStringLiteral("none");
    section.addChild(new QTreeWidgetItem({shortcut.action, here, keysText(shortcut.there)}));
}

/// What the longest keys and their note need.
int widestKeys(QTreeWidget& table) {
    constexpr int air = 12;
    int widest = 0;
    for (QTreeWidgetItemIterator item(&table); *item != nullptr; ++item)
        widest = std::max(widest, table.fontMetrics().horizontalAdvance((*item)->text(hereColumn)));
    return widest + air;
}

/// Sections are higher than the rows in them.
void fitRows(QTreeWidget& table) {
    for (QTreeWidgetItemIterator item(&table); *item != nullptr; ++item) {
        const bool isSection = (*item)->parent() == nullptr;
        const int height = TextSize::rowHeight(table, isSection ? sectionHeight : rowHeight);
        for (int column = actionColumn; column < columnCount; ++column)
            (*item)->setSizeHint(column, {0, height});
    }
}

/// Gives a column its width, or more where a text of it needs that.
void fitColumn(QTreeWidget& table, Column column, int least) {
    int width = TextSize::scaled(least, table);
    for (QTreeWidgetItemIterator item(&table); *item != nullptr; ++item) {
        const QFontMetrics letters((*item)->font(column));
        width = std::max(width, letters.horizontalAdvance((*item)->text(column)) + columnMargin);
    }
    table.setColumnWidth(column, width);
}

} // namespace

QWidget* makeTools(QWidget* parent) {
    auto* tools = new QWidget(parent);
    auto* grid = new QGridLayout(tools);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(20);
    const int rows = (static_cast<int>(paletteTools.size()) + toolColumns - 1) / toolColumns;
    int index = 0;
    for (const model::PaintTool tool : paletteTools) {
        grid->addWidget(makeTool(tool, tools), index % rows, index / rows);
        ++index;
    }
    return tools;
}

QWidget* makeShortcuts(QWidget* parent) {
    auto* table = new QTreeWidget(parent);
    table->setAccessibleName(TourTexts::tr("Shortcuts"));
    table->setColumnCount(columnCount);
    table->setHeaderLabels(
        {TourTexts::tr("Command"), TourTexts::tr("Here"), TourTexts::tr("Paint.NET")});
    table->setRootIsDecorated(false);
    table->setIndentation(0);
    table->setItemsExpandable(false);
    table->setFrameShape(QFrame::NoFrame);
    table->viewport()->setAutoFillBackground(false);
    table->setFocusPolicy(Qt::TabFocus);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QTreeWidgetItem* different = addSection(*table, TourTexts::tr("Different"));
    QTreeWidgetItem* same = addSection(*table, TourTexts::tr("The same"));
    for (const ComparedShortcut& shortcut : comparedShortcuts())
        addRow(shortcut.isSame() ? *same : *different, shortcut);
    table->header()->hide();
    table->header()->setStretchLastSection(false);
    table->header()->setSectionResizeMode(hereColumn, QHeaderView::Stretch);
    TextSize::follow(*table, [table] {
        fitColumn(*table, actionColumn, actionWidth);
        fitColumn(*table, thereColumn, thereWidth);
        fitRows(*table);
        table->setMinimumWidth(table->columnWidth(actionColumn) + widestKeys(*table) +
                               table->columnWidth(thereColumn) +
                               table->verticalScrollBar()->sizeHint().width());
    });
    return table;
}

} // namespace quillabrae::shell::TourFigures
