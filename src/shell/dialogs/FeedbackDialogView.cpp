// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/FeedbackDialogView.h"

#include "platform/QtMimeSource.h"
#include "shell/controls/ControlScroller.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SlimBar.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/dialogs/FeedbackAttachmentRow.h"
#include "shell/looks/Style.h"
#include "store/DroppedContents.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;

constexpr QSize dialogSize{480, 520};
constexpr auto barStep = 33ms;
constexpr int confirmationSymbol = 48;

QString sendTitle() {
    return FeedbackDialogView::tr("Send Feedback");
}
QString sendingTitle() {
    return FeedbackDialogView::tr("Sending feedback…");
}

QLabel* note(const QString& text, QWidget* parent) {
    QLabel* label = Labels::muted(text, parent);
    label->setWordWrap(true);
    return label;
}

bool isReturn(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isDrag(const QEvent& event) {
    return event.type() == QEvent::DragEnter || event.type() == QEvent::DragMove ||
           event.type() == QEvent::Drop;
}

/// Words are the text's.
bool bringsImage(const QMimeData& data) {
    const QStringList types = data.formats();
    return data.hasUrls() || data.hasImage() || std::ranges::any_of(types, [](const QString& type) {
               return type.startsWith(QLatin1StringView("image/"));
           });
}

} // namespace

FeedbackDialogView::FeedbackDialogView(Environment environment, QWidget* parent)
    : QDialog(parent), m_environment(std::move(environment)), m_pages(new QStackedLayout(this)) {
    setWindowTitle(tr("Give Feedback"));
    setAcceptDrops(true);
    m_pages->addWidget(makeForm());
    m_pages->addWidget(makeConfirmation());
    connect(&m_barTimer, &QTimer::timeout, m_bar, [this] { m_bar->showFraction(m_fraction); });
    if (m_environment.draft) m_feedback->setPlainText(m_environment.draft());
    showLength();
    showError(m_environment.service.isConfigured()
                  ? QString()
                  : services::FeedbackError::noService().description);
    showState();
    TextSize::fixSize(*this, dialogSize);
    m_feedback->setFocus();
}

FeedbackDialogView::~FeedbackDialogView() {
    if (m_isProcessingImage) m_environment.attachments.cancel();
}

QWidget* FeedbackDialogView::makeForm() {
    auto* form = new QWidget(this);
    form->setWindowTitle(windowTitle());
    QVBoxLayout* column = DialogParts::makeColumn(*form, Style::grid);
    column->addWidget(note(tr("Help shape what Quillabrae becomes next."), form));
    column->addSpacing(Style::grid);
    column->addWidget(makeText(form), 1);

    m_image = new FeedbackAttachmentRow(form);
    connect(m_image, &FeedbackAttachmentRow::chooseRequested, this,
            &FeedbackDialogView::chooseImage);
    connect(m_image, &FeedbackAttachmentRow::removeRequested, this,
            &FeedbackDialogView::removeImage);
    column->addWidget(m_image);
    column->addWidget(note(tr("We take feedback very seriously and work to improve the "
                              "app quickly, so every suggestion is appreciated."),
                           form));

    m_error = Labels::failure({}, form);
    m_error->setObjectName(QStringLiteral("feedbackError"));
    m_error->setWordWrap(true);
    m_bar = new SlimBar(form);
    m_bar->setAccessibleName(sendingTitle());
    column->addWidget(m_error);
    column->addWidget(m_bar);

    column->addSpacing(Style::grid);
    DialogParts::addButtons(*form, makeButtons(form));
    return form;
}

QWidget* FeedbackDialogView::makeText(QWidget* form) {
    auto* part = new QWidget(form);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Style::grid / 2);
    const QString prompt = tr("What would make Quillabrae better for you?");
    m_feedback = new QPlainTextEdit(part);
    m_feedback->setAccessibleName(prompt);
    m_feedback->setTabChangesFocus(true);
    m_feedback->installEventFilter(this);
    m_feedback->viewport()->installEventFilter(this);
    connect(m_feedback, &QPlainTextEdit::textChanged, this, &FeedbackDialogView::showLength);
    QLabel* label = Labels::body(prompt, part);
    label->setBuddy(m_feedback);
    m_length = Labels::muted({}, part);
    m_excess = Labels::failure({}, part);
    column->addWidget(label);
    column->addWidget(m_feedback, 1);
    for (QLabel* length : {m_length, m_excess}) column->addWidget(length, 0, Qt::AlignRight);
    return part;
}

QHBoxLayout* FeedbackDialogView::makeButtons(QWidget* form) {
    m_send = new QPushButton(sendingTitle(), form);
    m_send->setDefault(true);
    Style::markPrimary(*m_send);
    // As wide as the longer of its titles needs, so that nothing moves.
    TextSize::follow(*m_send, [this] {
        const QString shown = m_send->text();
        m_send->setText(sendingTitle());
        m_send->setFixedWidth(m_send->sizeHint().width() + Style::grid);
        m_send->setText(shown);
    });
    m_send->setText(sendTitle());
    auto* cancel = new QPushButton(tr("Cancel"), form);
    connect(m_send, &QPushButton::clicked, this, &FeedbackDialogView::accept);
    connect(cancel, &QPushButton::clicked, this, &FeedbackDialogView::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(m_send);
    return buttons;
}

QWidget* FeedbackDialogView::makeConfirmation() {
    auto* page = new QWidget(this);
    QVBoxLayout* column = DialogParts::makeBody(*page, Style::grid);
    column->addStretch();
    column->addWidget(
        new SymbolLabel(QStringLiteral("checkmark.circle.fill"), confirmationSymbol, page), 0,
        Qt::AlignHCenter);
    QLabel* heading = Labels::title(tr("Feedback sent"), 1.4, page);
    QLabel* thanks = note(tr("Thank you. Your feedback will help make Quillabrae better."), page);
    for (QLabel* label : {heading, thanks}) {
        label->setAlignment(Qt::AlignHCenter);
        column->addWidget(label);
    }
    column->addStretch();
    m_done = new QPushButton(tr("Done"), page);
    Style::markPrimary(*m_done);
    connect(m_done, &QPushButton::clicked, this, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_done);
    DialogParts::addButtons(*page, buttons);
    return page;
}

QString FeedbackDialogView::errorMessage() const {
    return m_error->text();
}

void FeedbackDialogView::showLength() {
    const int length = services::feedbackLength(m_feedback->toPlainText());
    const bool isExcess = length > services::greatestFeedbackLength;
    for (QLabel* label : {m_length, m_excess})
        label->setText(QStringLiteral("%1 / 5,000").arg(length));
    m_length->setVisible(!isExcess);
    m_excess->setVisible(isExcess);
}

void FeedbackDialogView::accept() {
    if (m_isSent) return QDialog::accept();
    if (m_environment.service.isConfigured() && !isSending() && !m_isProcessingImage) send();
}

void FeedbackDialogView::reject() {
    if (!isSending()) return QDialog::reject();
    m_sending.reset();
    showState();
    m_feedback->setFocus();
}

void FeedbackDialogView::send() {
    showError({});
    m_fraction = -1.0;
    m_sending = m_environment.service.send(
        m_feedback->toPlainText(), m_attachment,
        [this](const platform::HttpProgress& progress) {
            m_fraction = progress.toSend > 0 && progress.sent < progress.toSend
                             ? double(progress.sent) / double(progress.toSend)
                             : -1.0;
        },
        [this](const std::optional<services::FeedbackError>& error) { finish(error); });
    showState();
}

void FeedbackDialogView::finish(const std::optional<services::FeedbackError>& error) {
    m_sending.reset();
    m_isSent = !error;
    if (error) showError(error->description);
    if (m_isSent && m_environment.whenSent) m_environment.whenSent();
    showState();
    if (error) m_feedback->setFocus();
}

void FeedbackDialogView::chooseImage() {
    // The picker runs a loop of its own, in which the dialog may go with the window it is over.
    const QPointer<FeedbackDialogView> isThere(this);
    const auto choose = m_environment.chooseImage;
    const auto url = choose(this);
    if (!isThere || !url || !takesImages()) return;
    beginImage(url->fileName());
    m_environment.attachments.prepare(*url, [this](const auto& outcome) { takeImage(outcome); });
}

void FeedbackDialogView::beginImage(const QString& name) {
    m_attachment.reset();
    m_isProcessingImage = true;
    m_image->showWorking(name);
    showError({});
    showState();
}

void FeedbackDialogView::takeImage(const services::FeedbackAttachmentOutcome& outcome) {
    m_isProcessingImage = false;
    if (const auto* attachment = std::get_if<services::FeedbackImageAttachment>(&outcome)) {
        m_attachment = *attachment;
        m_image->showAttachment(attachment->originalFilename, attachment->data.size());
    } else {
        m_image->showEmpty();
        showError(std::get<services::FeedbackAttachmentError>(outcome).description);
    }
    showState();
}

void FeedbackDialogView::removeImage() {
    m_environment.attachments.cancel();
    m_isProcessingImage = false;
    m_attachment.reset();
    m_image->showEmpty();
    showState();
}

bool FeedbackDialogView::takesImages() const {
    return m_environment.service.isConfigured() && !isSending() && !m_isSent;
}

void FeedbackDialogView::showError(const QString& message) {
    constexpr qsizetype room = 400;
    m_error->setText(message.size() > room ? message.first(room) + u'…' : message);
    m_error->setVisible(!message.isEmpty());
    if (!message.isEmpty()) bringIntoSightLater(*m_error);
}

void FeedbackDialogView::showState() {
    const bool isOpen = m_environment.service.isConfigured() && !isSending();
    for (QWidget* part : {static_cast<QWidget*>(m_feedback), static_cast<QWidget*>(m_image)})
        part->setEnabled(isOpen);
    m_send->setEnabled(isOpen && !m_isProcessingImage);
    m_send->setText(isSending() ? sendingTitle() : sendTitle());
    m_bar->setVisible(isSending());
    if (isSending())
        m_barTimer.start(barStep);
    else
        m_barTimer.stop();
    if (!m_isSent) return;
    m_pages->setCurrentIndex(1);
    m_done->setDefault(true);
    m_done->setFocus();
}

/// Return is a new line in the text, and Ctrl+Return sends it. A picture that is dragged over the
/// text is the dialog's.
bool FeedbackDialogView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_feedback && event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (isReturn(key) && (key.modifiers() & Qt::ControlModifier)) {
            accept();
            return true;
        }
    }
    if (isDrag(*event) && bringsImage(*static_cast<QDropEvent&>(*event).mimeData())) {
        event->ignore();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void FeedbackDialogView::dragEnterEvent(QDragEnterEvent* event) {
    if (!takesImages() || !bringsImage(*event->mimeData())) return;
    event->acceptProposedAction();
    m_image->markDropTarget(true);
}

void FeedbackDialogView::dragLeaveEvent(QDragLeaveEvent*) {
    m_image->markDropTarget(false);
}

void FeedbackDialogView::dropEvent(QDropEvent* event) {
    m_image->markDropTarget(false);
    if (!takesImages()) return;
    event->acceptProposedAction();
    const auto dropped = store::droppedContents(platform::QtMimeSource(*event->mimeData()));
    const auto taken = [this](const auto& outcome) { takeImage(outcome); };
    if (!dropped.files.isEmpty()) {
        beginImage(dropped.files.front().fileName());
        m_environment.attachments.prepare(dropped.files.front(), taken);
    } else if (!dropped.isEmpty()) {
        const QString name = tr("Dropped image");
        beginImage(name);
        m_environment.attachments.prepare(dropped.picture, name, taken);
    }
}

} // namespace quillabrae::shell
