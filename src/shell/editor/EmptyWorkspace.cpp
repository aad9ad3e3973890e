// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/EmptyWorkspace.h"

#include "shell/app/WindowCoordinator.h"
#include "shell/controls/Card.h"
#include "shell/controls/Labels.h"
#include "shell/looks/Style.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

constexpr qreal titleScale = 1.3;
constexpr int padding = 4 * Style::grid;

} // namespace

EmptyWorkspace::EmptyWorkspace(const CommandContext& context, QWidget* parent) : QWidget(parent) {
    const QString heading = tr("No project is open");
    setAccessibleName(heading);
    auto* create = new QPushButton(title(command(CommandID::newProject)), this);
    auto* open = new QPushButton(title(command(CommandID::openProject)), this);
    Style::markPrimary(*create);
    auto* windows = &context.windows;
    connect(create, &QAbstractButton::clicked, windows, &WindowCoordinator::createNewProject);
    connect(open, &QAbstractButton::clicked, windows, &WindowCoordinator::openProjectFromPanel);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Style::grid);
    buttons->addStretch();
    buttons->addWidget(open);
    buttons->addWidget(create);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setSpacing(Style::grid);
    layout->addWidget(Labels::title(heading, titleScale, this), 0, Qt::AlignHCenter);
    layout->addWidget(Labels::muted(tr("Start a new one, open one, or drop a picture here."), this),
                      0, Qt::AlignHCenter);
    layout->addSpacing(Style::grid);
    layout->addLayout(buttons);
}

void EmptyWorkspace::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintCard(painter, rect(), palette());
}

} // namespace quillabrae::shell
