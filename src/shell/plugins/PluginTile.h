// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>

namespace quillabrae::effects {
struct QuillabraePlugin;
}

namespace quillabrae::shell {

/// A plugin's symbol, white on a tile of its accent. It is only looked at.
class PluginTile final : public QWidget {
    Q_OBJECT

public:
    PluginTile(const effects::QuillabraePlugin& plugin, int extent, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString m_symbolName;
    QColor m_accent;
    /// Made when it is first painted, for the screen it is on.
    QPixmap m_glyph;
    qreal m_glyphRatio = 0.0;
};

} // namespace quillabrae::shell
