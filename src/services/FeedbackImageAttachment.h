// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace quillabrae::services {

/// A picture that goes with feedback.
struct FeedbackImageAttachment {
    /// A JPEG file.
    QByteArray data;
    /// The name that is sent.
    QString filename;
    /// The name that is shown.
    QString originalFilename;

    friend bool operator==(const FeedbackImageAttachment&,
                           const FeedbackImageAttachment&) = default;
};

} // namespace quillabrae::services
