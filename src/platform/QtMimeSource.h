// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MimeSource.h"

class QMimeData;

namespace quillabrae::platform {

/// What Qt hands over of a drag, valid while the drag's event is.
class QtMimeSource final : public MimeSource {
public:
    explicit QtMimeSource(const QMimeData& contents) : m_contents(contents) {}

    QStringList types() const override;
    QByteArray data(const QString& type) const override;

private:
    const QMimeData& m_contents;
};

} // namespace quillabrae::platform
