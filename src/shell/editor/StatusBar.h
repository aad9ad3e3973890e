// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

/// The bottom line of the editor window: the store's status message at the left, the pointer's
/// place on the canvas and the zoom at the right.
class StatusBar final : public QWidget {
    Q_OBJECT

public:
    explicit StatusBar(const store::ProjectStore& store, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showMessage();
    void showPosition();
    void showZoom();

    const store::ProjectStore& m_store;
    QLabel* m_message;
    QLabel* m_position;
    QLabel* m_zoom;
};

} // namespace quillabrae::shell
