// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace quillabrae::shell {

/// A window that has nothing to show yet, and says so.
class PlaceholderWindow final : public QWidget {
    Q_OBJECT

public:
    PlaceholderWindow(const QString& title, const QString& text);
};

} // namespace quillabrae::shell
