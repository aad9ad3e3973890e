// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settings/APIKeyPane.h"

#include "effects/OpenAIKeychainService.h"
#include "platform/Preferences.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SlimBar.h"
#include "shell/looks/Style.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>

#include <chrono>
#include <utility>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;
using platform::SecretOutcome;
using platform::SecretStoreError;

const auto connectionStatusKey = QStringLiteral("Quillabrae.openAIConnectionStatus");
// Stored as they are, shown in the user's language.
constexpr const char* connected = QT_TRANSLATE_NOOP("APIKeyPane", "Connected with BYOK");
constexpr const char* notConnected = QT_TRANSLATE_NOOP("APIKeyPane", "Not connected");

constexpr auto patience = 500ms;
constexpr auto barStep = 33ms;

QUrl keyPage() {
    return QUrl(QStringLiteral("https://platform.openai.com/api-keys"));
}

QString connectionStatus(const platform::Preferences& preferences) {
    const QString stored = preferences.value(connectionStatusKey).toString();
    return stored.isEmpty() ? QString::fromLatin1(notConnected) : stored;
}

} // namespace

APIKeyPane::APIKeyPane(const SettingsContext& context, QWidget* parent)
    : QWidget(parent), m_context(context) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, Style::grid);
    column->setSpacing(Style::grid);
    addStatus(*column);
    column->addSpacing(Style::grid);
    addField(*column);
    addButtons(*column);
    addMessage(*column);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        showMessage(tr("Waiting for the keychain..."));
        m_bar->show();
        m_barTimer.start(barStep);
    });
    connect(&m_barTimer, &QTimer::timeout, m_bar, [this] { m_bar->showFraction(-1.0); });
    // Until the store answers, what it said the last time.
    m_hasSavedAPIKey = connectionStatus(m_context.preferences) == QLatin1StringView(connected);
    loadAPIKey();
}

APIKeyPane::~APIKeyPane() = default;

void APIKeyPane::addStatus(QVBoxLayout& column) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * Style::grid);
    grid->setVerticalSpacing(Style::grid / 2);
    grid->setColumnStretch(1, 1);
    const auto addRow = [&](const QString& title) {
        const int row = grid->rowCount();
        auto* value = Labels::body({}, this);
        grid->addWidget(Labels::muted(title, this), row, 0);
        grid->addWidget(value, row, 1);
        return value;
    };
    m_connection = addRow(tr("Status"));
    m_connection->setObjectName(QStringLiteral("connectionStatus"));
    m_keyState = addRow(tr("API key"));
    m_keyState->setObjectName(QStringLiteral("keyState"));
    column.addLayout(grid);
}

void APIKeyPane::addField(QVBoxLayout& column) {
    m_field = new QLineEdit(this);
    const QString title = tr("Bring your own OpenAI API key");
    m_field->setAccessibleName(title);
    m_field->setPlaceholderText(QStringLiteral("sk-..."));
    m_field->setEchoMode(QLineEdit::Password);
    m_field->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                                 Qt::ImhNoAutoUppercase);
    QLabel* label = Labels::body(title, this);
    label->setBuddy(m_field);
    m_showsKey = new QCheckBox(tr("Show API key"), this);
    column.addWidget(label);
    column.addWidget(m_field);
    column.addWidget(m_showsKey);
    connect(m_field, &QLineEdit::returnPressed, this, &APIKeyPane::saveAPIKey);
    connect(m_field, &QLineEdit::textChanged, this, &APIKeyPane::showState);
    connect(m_showsKey, &QCheckBox::toggled, this, [this](bool isShown) {
        m_field->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
    });
}

void APIKeyPane::addButtons(QVBoxLayout& column) {
    m_save = new QPushButton(tr("Save API Key"), this);
    m_remove = new QPushButton(tr("Remove Key"), this);
    auto* get = new QPushButton(tr("Get API Key..."), this);
    Style::markPrimary(*m_save);
    auto* row = new QHBoxLayout;
    row->setSpacing(Style::grid);
    row->addWidget(m_save);
    row->addWidget(m_remove);
    row->addStretch();
    row->addWidget(get);
    column.addLayout(row);
    connect(m_save, &QPushButton::clicked, this, &APIKeyPane::saveAPIKey);
    connect(m_remove, &QPushButton::clicked, this, &APIKeyPane::removeAPIKey);
    connect(get, &QPushButton::clicked, this, [this] { m_context.openURL(keyPage()); });
}

void APIKeyPane::addMessage(QVBoxLayout& column) {
    m_message = Labels::muted({}, this);
    m_message->setObjectName(QStringLiteral("keyStatusMessage"));
    m_message->setWordWrap(true);
    m_bar = new SlimBar(this);
    m_bar->setAccessibleName(tr("Waiting for the keychain..."));
    m_bar->hide();
    column.addWidget(m_message);
    column.addWidget(m_bar);
}

bool APIKeyPane::isShowingAPIKey() const {
    return m_showsKey->isChecked();
}

QString APIKeyPane::keyStatusMessage() const {
    return m_message->text();
}

void APIKeyPane::await(std::unique_ptr<platform::SecretCall> call) {
    m_call = std::move(call);
    m_patience.start();
    showState();
}

void APIKeyPane::loadAPIKey() {
    await(m_context.keychain.beginLoading(
        [this](const SecretOutcome& outcome) { finishLoading(outcome); }));
}

void APIKeyPane::saveAPIKey() {
    const QString key = m_field->text().trimmed();
    if (key.isEmpty() || m_call != nullptr) return;
    await(m_context.keychain.beginSaving(key, [this](const SecretOutcome& outcome) {
        // Cleared, the field could bring the key back by an undo.
        if (std::holds_alternative<std::optional<QString>>(outcome)) m_field->setText({});
        finishWriting(outcome);
    }));
}

void APIKeyPane::removeAPIKey() {
    if (m_call != nullptr) return;
    await(m_context.keychain.beginRemoving(
        [this](const SecretOutcome& outcome) { finishWriting(outcome); }));
}

void APIKeyPane::finishWriting(const SecretOutcome& outcome) {
    m_call.reset();
    const auto* error = std::get_if<SecretStoreError>(&outcome);
    if (error == nullptr) return loadAPIKey();
    showMessage(error->description());
    showState();
}

void APIKeyPane::finishLoading(const SecretOutcome& outcome) {
    m_call.reset();
    const auto* error = std::get_if<SecretStoreError>(&outcome);
    m_hasSavedAPIKey = effects::OpenAIKeychainService::keyIn(outcome).has_value();
    m_context.preferences.setValue(
        connectionStatusKey, QString::fromLatin1(m_hasSavedAPIKey ? connected : notConnected));
    if (error != nullptr)
        showMessage(error->description());
    else
        showMessage(m_hasSavedAPIKey ? tr("Saved in Keychain") : tr("No key saved"));
    showState();
}

void APIKeyPane::showMessage(const QString& message) {
    m_message->setText(message);
}

void APIKeyPane::showState() {
    const bool isWaiting = m_call != nullptr;
    if (!isWaiting) {
        m_patience.stop();
        m_barTimer.stop();
        m_bar->hide();
    }
    const QByteArray status = connectionStatus(m_context.preferences).toUtf8();
    m_connection->setText(QCoreApplication::translate("APIKeyPane", status.constData()));
    m_keyState->setText(m_hasSavedAPIKey ? tr("API key saved in Keychain") : tr("No key saved"));
    m_save->setEnabled(!isWaiting && !m_field->text().trimmed().isEmpty());
    m_remove->setEnabled(!isWaiting);
}

QWidget* makeAPIKeyPane(const SettingsContext& context, QWidget* parent) {
    return new APIKeyPane(context, parent);
}

} // namespace quillabrae::shell
