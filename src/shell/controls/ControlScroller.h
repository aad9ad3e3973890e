// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>
#include <QSize>

namespace quillabrae::shell {

/// Scrolls a content with controls in it. While there is something to scroll, the wheel does that,
/// and changes no value that the pointer happens to be over; only a control that has the keyboard
/// takes it. Wherever the keyboard goes within the content comes into sight, unless it was sent
/// there by a click.
class ControlScroller : public QScrollArea {
    Q_OBJECT

public:
    /// The content is set later.
    explicit ControlScroller(QWidget* parent = nullptr);
    ~ControlScroller() override;

    /// Whether it shows only a part of its content.
    virtual bool hasMore() const;
    /// Scrolls until a part of the content shows, or its beginning, with that many points around
    /// it at each side.
    void bringIntoSight(const QWidget& part, QSize around = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void watch(QObject& part);
    void followKeyboard(const QWidget* now);

    QMetaObject::Connection m_keyboard;
};

/// Scrolls all that a part stands in until it shows, once it has its place there.
void bringIntoSightLater(QWidget& part);

} // namespace quillabrae::shell
