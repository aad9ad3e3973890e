// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>
#include <QBasicTimer>
#include <QObject>
#include <QString>

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::canvas {

class CanvasWidget;

/// The canvas as a screen reader meets it. Its description tells the place of the tool and what is
/// there, the tool, the zoom, the layer and the selection.
class CanvasWidgetAccessible final : public QAccessibleWidget {
public:
    explicit CanvasWidgetAccessible(CanvasWidget* canvas);

    QString text(QAccessible::Text kind) const override;

    /// Makes canvases known by this class from now on.
    static void install();

private:
    CanvasWidget* canvas() const;
};

/// Tells screen readers, where there are any, when a canvas's description has become another one
/// and rests at that. The canvas owns it.
class CanvasAnnouncer final : public QObject, private QAccessible::ActivationObserver {
    Q_OBJECT

public:
    /// Follows the store, which outlives it.
    CanvasAnnouncer(CanvasWidget& canvas, const store::ProjectStore& store);
    ~CanvasAnnouncer() override;

    /// To be called when something may have changed that the store does not know.
    void mayHaveChanged();

Q_SIGNALS:
    /// What listeners are told.
    void announced(const QString& description);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void accessibilityActiveChanged(bool isActive) override { m_isActive = isActive; }

    CanvasWidget& m_canvas;
    /// Whether anybody listens.
    bool m_isActive = QAccessible::isActive();
    QBasicTimer m_rest;
    /// As last announced.
    QString m_description;
};

} // namespace quillabrae::canvas
