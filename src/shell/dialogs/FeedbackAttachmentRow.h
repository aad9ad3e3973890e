// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace quillabrae::shell {

/// The row of the feedback dialog that holds its picture: none yet, one that is being compressed,
/// or one that will be sent.
class FeedbackAttachmentRow final : public QWidget {
    Q_OBJECT

public:
    explicit FeedbackAttachmentRow(QWidget* parent = nullptr);

    void showEmpty();
    void showWorking(const QString& originalFilename);
    void showAttachment(const QString& originalFilename, qint64 byteCount);
    /// Whether a drag over the dialog would end here.
    void markDropTarget(bool isTargeted);

Q_SIGNALS:
    void chooseRequested();
    void removeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showTexts(const QString& heading, const QString& detail);

    QLabel* m_heading;
    QLabel* m_detail;
    QPushButton* m_choose;
    QPushButton* m_remove;
    bool m_isDropTarget = false;
};

/// A file's size as people say it, as in "312 KB": thousands, and a tenth from a million on.
QString fileSizeText(qint64 byteCount);

} // namespace quillabrae::shell
