// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/welcome/WelcomePanel.h"

#include "platform/QtMimeSource.h"
#include "shell/app/WindowCoordinator.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/BodyScroller.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/controls/TextSize.h"
#include "shell/controls/VisualPart.h"
#include "shell/looks/Style.h"
#include "shell/welcome/ActionRow.h"
#include "shell/welcome/RecentList.h"
#include "shell/welcome/WelcomeContent.h"
#include "store/DroppedContents.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

namespace quillabrae::shell {
namespace {

constexpr int sideMargin = 28;
constexpr int topMargin = 40;
constexpr int closeExtent = 28;
constexpr int buttonHeight = 36;
constexpr int logoExtent = 56;

QPushButton* makeButton(const QString& title, QWidget* parent) {
    auto* button = new QPushButton(title, parent);
    TextSize::follow(
        *button, [button] { button->setFixedHeight(TextSize::rowHeight(*button, buttonHeight)); });
    button->setAutoDefault(true);
    return button;
}

} // namespace

WelcomePanel::WelcomePanel(store::ProjectStore& store, WindowCoordinator& windows,
                           const CommandActions& actions)
    : m_store(store), m_windows(windows), m_closeButton(makeCloseButton()) {
    setAcceptDrops(true);
    actions.addKeysTo(*this);
    auto* body = new ScrolledBody;
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(new BodyScroller(body, this));
    m_closeButton->raise();

    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(sideMargin, topMargin, sideMargin, 2 * Style::grid);
    column->setSpacing(0);
    build(*column);
    followStore();
    refresh();
}

QWidget* WelcomePanel::makeCloseButton() {
    auto* button = new IconButton({.symbolName = QStringLiteral("xmark"),
                                   .title = tr("Close"),
                                   .help = tr("Closes this panel."),
                                   .extent = closeExtent,
                                   .iconExtent = Style::smallIcon},
                                  this);
    button->setObjectName(QStringLiteral("closeWelcome"));
    connect(button, &QAbstractButton::clicked, this, &QWidget::close, Qt::QueuedConnection);
    return button;
}

void WelcomePanel::build(QVBoxLayout& layout) {
    buildHeader(layout);
    layout.addSpacing(3 * Style::grid);
    buildButtons(layout);
    layout.addSpacing(2 * Style::grid);
    buildOffers(layout);
    layout.addSpacing(2 * Style::grid);
    buildRecents(layout);
}

void WelcomePanel::buildOffers(QVBoxLayout& layout) {
    auto* tour =
        new ActionRow({.symbolName = QStringLiteral("graduationcap"),
                       .heading = tr("Coming from Paint.NET?"),
                       .text = tr("Your muscle memory already knows most of this workspace."),
                       .link = tr("Take the 60-second workspace tour"),
                       .help = tr("Open the Paint.NET quick-start guide")},
                      this);
    connect(tour, &QAbstractButton::clicked, this, [this] { m_windows.showPaintNetQuickStart(); });
    m_closedWork =
        new ActionRow({.symbolName = QStringLiteral("clock.arrow.circlepath"),
                       .heading = tr("Reopen Closed Work"),
                       .text = tr("Unsaved tabs of the window that was closed."),
                       .link = {},
                       .help = tr("Brings back the tabs and their history as they were.")},
                      this);
    m_closedWork->setObjectName(QStringLiteral("reopenClosedWork"));
    connect(
        m_closedWork, &QAbstractButton::clicked, this, [this] { m_windows.reopenClosedWork(); },
        Qt::QueuedConnection);
    layout.addWidget(tour);
    layout.addSpacing(Style::grid);
    layout.addWidget(m_closedWork);
}

/// What was open lately, and under it why something could not be opened.
void WelcomePanel::buildRecents(QVBoxLayout& layout) {
    m_recents = new RecentList(m_store, m_windows, this);
    m_status = Labels::muted({}, this);
    m_status->setObjectName(QStringLiteral("welcomeStatus"));
    m_status->setWordWrap(true);
    m_status->setContentsMargins(0, Style::grid, 0, 0);
    layout.addWidget(Labels::heading(tr("Recent"), this));
    layout.addSpacing(Style::grid / 2);
    layout.addWidget(m_recents, 1);
    layout.addWidget(m_status);
}

void WelcomePanel::buildHeader(QVBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    row->setSpacing(2 * Style::grid);
    auto* logo = new SymbolLabel(QStringLiteral("quillabrae.project"), logoExtent, this);
    row->addWidget(logo);
    auto* names = new QVBoxLayout;
    names->setSpacing(0);
    names->addStretch();
    names->addWidget(Labels::title(QStringLiteral("Quillabrae"), 2.2, this));
    names->addWidget(Labels::muted(tr("Native pixel editor"), this));
    names->addStretch();
    row->addLayout(names, 1);
    layout.addLayout(row);
}

void WelcomePanel::buildButtons(QVBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    row->setSpacing(Style::grid);
    QPushButton* create = makeButton(title(command(CommandID::newProject)), this);
    create->setDefault(true);
    Style::markPrimary(*create);
    QPushButton* open = makeButton(title(command(CommandID::openProject)), this);
    connect(create, &QPushButton::clicked, this, [this] { m_windows.createNewProject(); });
    connect(open, &QPushButton::clicked, this, [this] { m_windows.openProjectFromPanel(); });
    row->addWidget(create, 1);
    row->addWidget(open, 1);
    layout.addLayout(row);
    create->setFocus();
}

void WelcomePanel::followStore() {
    using store::ProjectStore;
    connect(&m_store, &ProjectStore::recentsChanged, this, &WelcomePanel::refresh);
    connect(&m_store, &ProjectStore::closedWorkChanged, this, &WelcomePanel::refresh);
    connect(&m_store, &ProjectStore::statusMessageChanged, this, &WelcomePanel::refresh);
}

void WelcomePanel::refresh() {
    const WelcomeContent content = WelcomeContent::of(m_store);
    m_closedWork->setVisible(content.offersClosedWork);
    m_recents->showRecents(content.recents);
    const bool isNews = content.status != m_status->text();
    m_status->setText(content.status);
    m_status->setVisible(!content.status.isEmpty());
    if (isNews && !content.status.isEmpty()) bringIntoSightLater(*m_status);
}

void WelcomePanel::resizeEvent(QResizeEvent*) {
    const QRect corner(width() - closeExtent - Style::grid, Style::grid, closeExtent, closeExtent);
    m_closeButton->setGeometry(visualPart(*this, corner));
}

void WelcomePanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Style::raised(palette()));
    const bool isTarget = m_isImageDropTargeted;
    painter.setPen(
        QPen(isTarget ? Style::accent(palette()) : Style::line(palette()), isTarget ? 3.0 : 1.0));
    const qreal inset = isTarget ? 1.5 : 0.5;
    painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
}

void WelcomePanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) m_press = event->globalPosition().toPoint();
}

void WelcomePanel::mouseMoveEvent(QMouseEvent* event) {
    if (!m_press.has_value() || (event->buttons() & Qt::LeftButton) == 0) return;
    const QPoint way = event->globalPosition().toPoint() - *m_press;
    if (way.manhattanLength() < QApplication::startDragDistance()) return;
    m_press.reset();
    windowHandle()->startSystemMove();
}

void WelcomePanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    else
        QWidget::keyPressEvent(event);
}

void WelcomePanel::markDropTarget(bool isTargeted) {
    m_isImageDropTargeted = isTargeted;
    update();
}

void WelcomePanel::dragEnterEvent(QDragEnterEvent* event) {
    if (!store::isDropWelcome(platform::QtMimeSource(*event->mimeData()))) return;
    event->acceptProposedAction();
    markDropTarget(true);
}

void WelcomePanel::dragLeaveEvent(QDragLeaveEvent*) {
    markDropTarget(false);
}

void WelcomePanel::dropEvent(QDropEvent* event) {
    markDropTarget(false);
    event->acceptProposedAction();
    m_windows.acceptDrop(store::droppedContents(platform::QtMimeSource(*event->mimeData())),
                         WindowRole::welcome);
}

} // namespace quillabrae::shell
