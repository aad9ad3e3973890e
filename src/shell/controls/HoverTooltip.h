// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

namespace quillabrae::shell {

/// On which side of its control a tooltip stands. The leading and trailing sides of `above` line
/// the bubble's edge up with the control's.
enum class HoverTooltipPlacement { below, above, aboveLeading, aboveTrailing, trailing };

struct HoverTooltipText {
    QString title;
    QString description;
};

/// What a part of a control tells; `area` is in the control's coordinates.
struct HoverTooltipPart {
    QRect area;
    HoverTooltipText text;
};

/// The bubble that tells a control's title and what it does after the pointer has rested on it for
/// two seconds. It takes no input and goes when the pointer leaves or a button is pressed.
/// The text is also the control's accessible name and description.
class HoverTooltip final : public QObject {
    Q_OBJECT

public:
    /// Owned by `control`.
    HoverTooltip(QWidget* control, HoverTooltipText text, HoverTooltipPlacement placement);
    ~HoverTooltip() override;

    void setText(HoverTooltipText text);
    /// Lets the parts of a control speak for themselves, as the rows of a list do, in place of the
    /// control: what is at a point, if anything. The control tracks the pointer.
    void setParts(std::function<std::optional<HoverTooltipPart>(QPoint)> partAt);
    bool isShowing() const { return !m_bubble.isNull(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void await();
    void followPointer(QPoint at);
    void show();
    void hide();

    QWidget* m_control;
    HoverTooltipText m_text;
    std::function<std::optional<HoverTooltipPart>(QPoint)> m_partAt;
    std::optional<HoverTooltipPart> m_part;
    HoverTooltipPlacement m_placement;
    QBasicTimer m_timer;
    QPointer<QWidget> m_bubble;
};

} // namespace quillabrae::shell
