// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/AccountPane.h"

#include "services/QuillabraeAccountService.h"
#include "shell/controls/ElidedLabel.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SlimBar.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/looks/Style.h"
#include "shell/settings/SettingsTable.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <chrono>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;
using services::QuillabraeAccountService;

constexpr auto barStep = 33ms;

QLabel* note(const QString& text, QWidget* parent) {
    QLabel* label = Labels::muted(text, parent);
    label->setWordWrap(true);
    return label;
}

} // namespace

AccountPane::AccountPane(QuillabraeAccountService& account, QWidget* parent)
    : QWidget(parent), m_account(account) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2 * Style::grid);
    if (!m_account.isConfigured()) {
        column->addWidget(note(tr("This build of Quillabrae has no account service "
                                  "configured, so nobody can sign in. Everything works "
                                  "without an account."),
                               this));
        return;
    }
    addUser(*column);
    addButtons(*column);
    addMessage(*column);
    connect(&m_account, &QuillabraeAccountService::changed, this, &AccountPane::showState);
    connect(&m_barTimer, &QTimer::timeout, m_bar, [this] { m_bar->showFraction(-1.0); });
    m_account.lookForToken();
    showState();
}

void AccountPane::addUser(QVBoxLayout& column) {
    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(new SymbolLabel(QStringLiteral("person.crop.circle"), Style::mediumIcon, this),
                   0, Qt::AlignTop);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    m_name = new ElidedLabel(this);
    QFont bold = m_name->font();
    bold.setWeight(QFont::DemiBold);
    m_name->setFont(bold);
    m_name->setObjectName(QStringLiteral("accountName"));
    m_email = Labels::muted({}, this);
    m_email->setObjectName(QStringLiteral("accountEmail"));
    m_email->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_email->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lines->addWidget(m_name);
    lines->addWidget(m_email);
    row->addLayout(lines, 1);
    column.addLayout(row);
}

void AccountPane::addButtons(QVBoxLayout& column) {
    m_signIn = new QPushButton(tr("Sign in"), this);
    m_signOut = new QPushButton(tr("Sign Out"), this);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_signIn->setAccessibleDescription(tr("Opens the sign-in page in your browser."));
    Style::markPrimary(*m_signIn);
    auto* row = new QHBoxLayout;
    row->setSpacing(Style::grid);
    for (QPushButton* button : {m_signIn, m_signOut, m_cancel}) row->addWidget(button);
    row->addStretch();
    column.addLayout(row);
    connect(m_signIn, &QPushButton::clicked, this, [this] { m_account.signIn(); });
    connect(m_signOut, &QPushButton::clicked, this, [this] { m_account.signOut(); });
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_account.cancelSignIn(); });
}

void AccountPane::addMessage(QVBoxLayout& column) {
    m_message = note({}, this);
    m_message->setObjectName(QStringLiteral("accountStatus"));
    m_bar = new SlimBar(this);
    m_bar->setAccessibleName(tr("Signing in or out"));
    column.addWidget(m_message);
    column.addWidget(m_bar);
}

void AccountPane::showUser() {
    const bool isSignedIn = m_account.isSignedIn();
    const bool hasName = !m_account.name().isEmpty();
    if (!isSignedIn)
        m_name->setText(tr("Not signed in"));
    else if (hasName)
        m_name->setText(m_account.name());
    else
        m_name->setText(tr("Signed in"));
    m_email->setText(isSignedIn ? m_account.email() : QString());
    m_email->setVisible(!m_email->text().isEmpty());
}

void AccountPane::showState() {
    const bool isBusy = m_account.isBusy();
    showUser();
    m_signIn->setVisible(!m_account.isSignedIn());
    m_signOut->setVisible(m_account.isSignedIn());
    for (QPushButton* button : {m_signIn, m_signOut}) button->setEnabled(!isBusy);
    m_cancel->setVisible(m_account.canCancel());
    m_message->setText(m_account.statusMessage());
    m_message->setVisible(!m_message->text().isEmpty());
    m_bar->setVisible(isBusy);
    if (isBusy)
        m_barTimer.start(barStep);
    else
        m_barTimer.stop();
}

QWidget* makeAccountPane(const SettingsContext& context, QWidget* parent) {
    return new AccountPane(context.account, parent);
}

} // namespace quillabrae::shell
