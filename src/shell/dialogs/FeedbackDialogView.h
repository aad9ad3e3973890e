// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/FeedbackAttachmentService.h"
#include "services/FeedbackService.h"

#include <QDialog>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class QLabel;
class QHBoxLayout;
class QPlainTextEdit;
class QPushButton;
class QStackedLayout;

namespace quillabrae::shell {

class FeedbackAttachmentRow;
class SlimBar;

/// Takes what users have to say, with a picture if they like, and sends it. Nothing typed is lost
/// to a failure or to a sending that is cancelled: the dialog is closed by a success or by Cancel,
/// Escape or the close button while nothing is being sent.
class FeedbackDialogView final : public QDialog {
    Q_OBJECT

public:
    /// Both services outlive the dialog, and no other dialog uses the second meanwhile.
    struct Environment {
        const services::FeedbackService& service;
        services::FeedbackAttachmentService& attachments;
        /// Asks for an image file; nothing when the user cancels.
        std::function<std::optional<QUrl>(QWidget* parent)> chooseImage;
        /// What is in the form to begin with, under what the user writes; may be absent.
        std::function<QString()> draft{};
        /// Feedback was sent; may be absent.
        std::function<void()> whenSent{};
    };

    explicit FeedbackDialogView(Environment environment, QWidget* parent = nullptr);
    ~FeedbackDialogView() override;

    const std::optional<services::FeedbackImageAttachment>& attachment() const {
        return m_attachment;
    }
    bool isProcessingImage() const { return m_isProcessingImage; }
    bool isSending() const { return m_sending != nullptr; }
    bool isSent() const { return m_isSent; }
    QString errorMessage() const;

    /// Sends what there is, unless a picture is still being compressed.
    void accept() override;
    /// Stops sending; closes where nothing is being sent.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QWidget* makeForm();
    QWidget* makeText(QWidget* form);
    QHBoxLayout* makeButtons(QWidget* form);
    QWidget* makeConfirmation();
    void showLength();
    void chooseImage();
    void beginImage(const QString& name);
    void takeImage(const services::FeedbackAttachmentOutcome& outcome);
    void removeImage();
    bool takesImages() const;
    void send();
    void finish(const std::optional<services::FeedbackError>& error);
    void showError(const QString& message);
    void showState();

    Environment m_environment;
    QStackedLayout* m_pages;
    QPlainTextEdit* m_feedback = nullptr;
    QLabel* m_length = nullptr;
    QLabel* m_excess = nullptr;
    FeedbackAttachmentRow* m_image = nullptr;
    QLabel* m_error = nullptr;
    SlimBar* m_bar = nullptr;
    QPushButton* m_send = nullptr;
    QPushButton* m_done = nullptr;
    QTimer m_barTimer;
    std::optional<services::FeedbackImageAttachment> m_attachment;
    std::unique_ptr<platform::HttpExchange> m_sending;
    /// How much of the request is on its way, below 0 while that is not known.
    double m_fraction = -1.0;
    bool m_isProcessingImage = false;
    bool m_isSent = false;
};

} // namespace quillabrae::shell
