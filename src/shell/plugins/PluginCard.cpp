// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/plugins/PluginCard.h"

#include "shell/controls/Card.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"
#include "shell/plugins/PluginAccent.h"
#include "shell/plugins/PluginTile.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <array>
#include <utility>

namespace quillabrae::shell {
namespace {

constexpr int padding = 16;
constexpr int plainTile = 44;
constexpr int featuredTile = 96;
constexpr int leastButtonWidth = 84;
constexpr qreal plainTitle = 1.15;
constexpr qreal featuredTitle = 1.7;
/// Of 255: how much of the accent the featured card's ground takes on.
constexpr int washStrength = 30;

QString withTitle(const QString& verb, const effects::QuillabraePlugin& plugin) {
    //: A verb and what it is done to, as in "Run Ink Press".
    return PluginCard::tr("%1 %2").arg(verb, title(plugin));
}

QLabel* wrapped(QLabel* label) {
    label->setWordWrap(true);
    return label;
}

} // namespace

PluginCard::PluginCard(effects::QuillabraePlugin plugin, Kind kind, QWidget* parent)
    : QWidget(parent), m_plugin(std::move(plugin)), m_kind(kind) {
    setAccessibleName(title(m_plugin));
    setAccessibleDescription(tagline(m_plugin));
    if (m_kind == Kind::featured)
        addFeatured();
    else
        addPlain();
    showState({});
}

void PluginCard::addPlain() {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(Style::grid);
    auto* head = new QHBoxLayout;
    head->setSpacing(12);
    head->addWidget(new PluginTile(m_plugin, plainTile, this));
    auto* names = new QVBoxLayout;
    names->setSpacing(2);
    names->addStretch();
    auto* name = new QHBoxLayout;
    name->addWidget(Labels::title(title(m_plugin), plainTitle, this), 1);
    name->addWidget(Labels::muted(m_plugin.version, this), 0, Qt::AlignBottom);
    names->addLayout(name);
    names->addWidget(wrapped(Labels::muted(
        QStringLiteral("%1 · %2").arg(title(m_plugin.category), m_plugin.author), this)));
    names->addStretch();
    head->addLayout(names, 1);
    column->addLayout(head);
    addText(*column, 1.0);
    column->addStretch();
    column->addWidget(makeButtons());
}

void PluginCard::addFeatured() {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding + Style::grid, padding + Style::grid, padding + Style::grid,
                            padding + Style::grid);
    row->setSpacing(3 * Style::grid);
    row->addWidget(new PluginTile(m_plugin, featuredTile, this), 0, Qt::AlignVCenter);
    auto* column = new QVBoxLayout;
    column->setSpacing(Style::grid / 2);
    column->addWidget(Labels::heading(tr("EDITOR'S PICK"), this));
    column->addWidget(Labels::title(title(m_plugin), featuredTitle, this));
    addText(*column, 1.1);
    column->addSpacing(Style::grid);
    column->addWidget(makeButtons());
    row->addLayout(column, 1);
}

void PluginCard::addText(QVBoxLayout& column, qreal titleFactor) {
    column.addWidget(wrapped(Labels::title(tagline(m_plugin), titleFactor, this)));
    column.addWidget(wrapped(Labels::muted(details(m_plugin), this)));
}

QPushButton* PluginCard::makeButton(const QString& verb, const QString& help,
                                    void (PluginCard::*signal)()) {
    auto* button = new QPushButton(verb, this);
    button->setAutoDefault(true);
    button->setMinimumWidth(leastButtonWidth);
    button->setAccessibleName(withTitle(verb, m_plugin));
    button->setAccessibleDescription(help);
    connect(button, &QPushButton::clicked, this, signal);
    return button;
}

QWidget* PluginCard::makeButtons() {
    m_install = makeButton(tr("Install"), tr("Adds the plugin to the Plugins menu."),
                           &PluginCard::installRequested);
    m_run = makeButton(tr("Run"), {}, &PluginCard::runRequested);
    m_remove = makeButton(tr("Remove"), tr("Takes the plugin out of the Plugins menu."),
                          &PluginCard::removeRequested);
    if (m_kind == Kind::featured) {
        Style::markPrimary(*m_install);
        Style::markPrimary(*m_run);
    }
    m_runTooltip = new HoverTooltip(m_run, {}, HoverTooltipPlacement::below);
    auto* buttons = new QWidget(this);
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::grid);
    for (QPushButton* button : {m_install, m_run, m_remove}) row->addWidget(button);
    row->addStretch();
    return buttons;
}

void PluginCard::showState(State state) {
    const QWidget* focused = QApplication::focusWidget();
    const bool hadKeyboard = focused != nullptr && isAncestorOf(focused);
    m_runTooltip->setText(
        {withTitle(tr("Run"), m_plugin), state.canRun ? tr("Runs on the selected layer.")
                                                      : tr("Open a project to run this plugin")});
    m_run->setEnabled(state.canRun);
    m_install->setVisible(!state.isInstalled);
    m_run->setVisible(state.isInstalled);
    m_remove->setVisible(state.isInstalled);
    if (hadKeyboard && !(focused->isVisible() && focused->isEnabled())) focusButtons();
}

void PluginCard::focusButtons() {
    for (QPushButton* button : {m_install, m_run, m_remove}) {
        if (!button->isVisibleTo(this) || !button->isEnabled()) continue;
        button->setFocus(Qt::TabFocusReason);
        return;
    }
}

void PluginCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintCard(painter, rect(), palette());
    if (m_kind != Kind::featured) return;
    QColor wash = accentColor(m_plugin);
    wash.setAlpha(washStrength);
    painter.setPen(Qt::NoPen);
    painter.setBrush(wash);
    painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), Style::grid, Style::grid);
}

} // namespace quillabrae::shell
