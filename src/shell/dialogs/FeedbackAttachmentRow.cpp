// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/FeedbackAttachmentRow.h"

#include "shell/controls/ElidedLabel.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/looks/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace quillabrae::shell {

FeedbackAttachmentRow::FeedbackAttachmentRow(QWidget* parent) : QWidget(parent) {
    constexpr int padding = 12;
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, Style::grid, padding, Style::grid);
    row->setSpacing(padding);
    row->addWidget(new SymbolLabel(QStringLiteral("photo"), Style::mediumIcon, this));
    auto* lines = new QVBoxLayout;
    lines->setSpacing(0);
    m_heading = new ElidedLabel(this);
    m_detail = Labels::muted({}, this);
    lines->addWidget(m_heading);
    lines->addWidget(m_detail);
    row->addLayout(lines, 1);
    m_choose = new QPushButton(tr("Choose…"), this);
    m_choose->setAccessibleName(tr("Choose an image to attach"));
    m_remove = new QPushButton(tr("Remove"), this);
    m_remove->setAccessibleDescription(tr("Sends the feedback without an image."));
    for (QPushButton* button : {m_choose, m_remove}) {
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    connect(m_choose, &QPushButton::clicked, this, &FeedbackAttachmentRow::chooseRequested);
    connect(m_remove, &QPushButton::clicked, this, &FeedbackAttachmentRow::removeRequested);
    showEmpty();
}

void FeedbackAttachmentRow::showEmpty() {
    showTexts(tr("Attach an image"), tr("Optional · compressed before sending"));
    m_choose->show();
    m_remove->hide();
}

void FeedbackAttachmentRow::showWorking(const QString& originalFilename) {
    showTexts(originalFilename, tr("Compressing image…"));
    m_choose->hide();
    m_remove->show();
}

void FeedbackAttachmentRow::showAttachment(const QString& originalFilename, qint64 byteCount) {
    showTexts(originalFilename, tr("Compressed JPEG · %1").arg(fileSizeText(byteCount)));
    m_choose->hide();
    m_remove->show();
}

void FeedbackAttachmentRow::showTexts(const QString& heading, const QString& detail) {
    m_heading->setText(heading);
    m_detail->setText(detail);
}

void FeedbackAttachmentRow::markDropTarget(bool isTargeted) {
    m_isDropTarget = isTargeted;
    update();
}

void FeedbackAttachmentRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double width = m_isDropTarget ? 2.0 : 1.0;
    painter.setPen(QPen(m_isDropTarget ? Style::accent(palette()) : Style::line(palette()), width));
    painter.setBrush(m_isDropTarget ? Style::accentWash(palette()) : Style::raised(palette()));
    const double inset = width / 2.0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            Style::cornerRadius, Style::cornerRadius);
}

QString fileSizeText(qint64 byteCount) {
    constexpr qint64 kilobyte = 1'000;
    constexpr qint64 megabyte = 1'000'000;
    if (byteCount < kilobyte)
        return FeedbackAttachmentRow::tr("%n bytes", nullptr, static_cast<int>(byteCount));
    // Whole thousands that round up to a million are that.
    if (byteCount < megabyte - kilobyte / 2)
        return FeedbackAttachmentRow::tr("%1 KB").arg((byteCount + kilobyte / 2) / kilobyte);
    return FeedbackAttachmentRow::tr("%1 MB").arg(double(byteCount) / double(megabyte), 0, 'f', 1);
}

} // namespace quillabrae::shell
