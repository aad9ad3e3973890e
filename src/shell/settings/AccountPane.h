// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quillabrae::services {
class QuillabraeAccountService;
}

namespace quillabrae::shell {

class SlimBar;
struct SettingsContext;

/// Who is signed in, the way in and out, and what came of the last try. A build without a service
/// says that it has none.
class AccountPane final : public QWidget {
    Q_OBJECT

public:
    /// Has the service look for its token. `account` outlives the pane.
    explicit AccountPane(services::QuillabraeAccountService& account, QWidget* parent = nullptr);

private:
    void addUser(QVBoxLayout& column);
    void addButtons(QVBoxLayout& column);
    void addMessage(QVBoxLayout& column);
    void showState();
    void showUser();

    services::QuillabraeAccountService& m_account;
    QLabel* m_name = nullptr;
    QLabel* m_email = nullptr;
    QPushButton* m_signIn = nullptr;
    QPushButton* m_signOut = nullptr;
    QPushButton* m_cancel = nullptr;
    QLabel* m_message = nullptr;
    SlimBar* m_bar = nullptr;
    QTimer m_barTimer;
};

/// Owned by `parent`.
QWidget* makeAccountPane(const SettingsContext& context, QWidget* parent);

} // namespace quillabrae::shell
