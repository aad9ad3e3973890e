// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintAppSettings.h"

#include <QColor>
#include <QWidget>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class ColorSwatch;

QColor toQColor(const model::ColorValue& color);
model::ColorValue toColorValue(const QColor& color);

/// The primary colour over the secondary one, with a button at their corner that exchanges them.
class ColorStack final : public QWidget {
    Q_OBJECT

public:
    explicit ColorStack(store::ProjectStore& store, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    /// Exchanges the two colours.
    void swapColors();

private:
    void showColors();

    store::ProjectStore& m_store;
    ColorSwatch* m_secondary;
    ColorSwatch* m_primary;
};

} // namespace quillabrae::shell
