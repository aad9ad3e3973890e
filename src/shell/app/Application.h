// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>

namespace quillabrae::shell {

/// The application, which outlives an event that there was not enough memory for. Commands deal
/// with that themselves and leave nothing half done; this is for everything around them, such as a
/// repaint.
class Application final : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

Q_SIGNALS:
    /// An event was dropped for that.
    void memoryRefused();
};

} // namespace quillabrae::shell
