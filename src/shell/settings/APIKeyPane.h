// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SecretStore.h"
#include "shell/settings/SettingsTable.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace quillabrae::shell {

class SlimBar;

/// The user's key for the image-edit service: whether there is one, a field for another, and what
/// came of the last try. The key is written to the system's secret store and shown nowhere; the
/// store may take its time, and the window goes on meanwhile.
class APIKeyPane final : public QWidget {
    Q_OBJECT

public:
    /// Begins to look for the key.
    explicit APIKeyPane(const SettingsContext& context, QWidget* parent = nullptr);
    ~APIKeyPane() override;

    bool hasSavedAPIKey() const { return m_hasSavedAPIKey; }
    bool isShowingAPIKey() const;
    QString keyStatusMessage() const;

private:
    void addStatus(QVBoxLayout& column);
    void addField(QVBoxLayout& column);
    void addButtons(QVBoxLayout& column);
    void addMessage(QVBoxLayout& column);
    void loadAPIKey();
    void saveAPIKey();
    void removeAPIKey();
    void finishLoading(const platform::SecretOutcome& outcome);
    /// After the key was to be written or removed.
    void finishWriting(const platform::SecretOutcome& outcome);
    void await(std::unique_ptr<platform::SecretCall> call);
    void showMessage(const QString& message);
    void showState();

    SettingsContext m_context;
    QLabel* m_connection = nullptr;
    QLabel* m_keyState = nullptr;
    QLineEdit* m_field = nullptr;
    QCheckBox* m_showsKey = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_remove = nullptr;
    QLabel* m_message = nullptr;
    SlimBar* m_bar = nullptr;
    /// Runs out when the store has taken long enough to say so.
    QTimer m_patience;
    QTimer m_barTimer;
    std::unique_ptr<platform::SecretCall> m_call;
    bool m_hasSavedAPIKey = false;
};

/// Owned by `parent`.
QWidget* makeAPIKeyPane(const SettingsContext& context, QWidget* parent);

} // namespace quillabrae::shell
