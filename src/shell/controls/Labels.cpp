// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/Labels.h"

#include "shell/controls/TextSize.h"
#include "shell/looks/Style.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QStyle>

namespace quillabrae::shell::Labels {
namespace {

/// The side at which the program's language begins.
Qt::Alignment leading() {
    return QStyle::visualAlignment(QGuiApplication::layoutDirection(), Qt::AlignLeft) |
           Qt::AlignAbsolute;
}

/// A label whose own colour follows a change of the program's palette.
class TonedLabel final : public QLabel {
public:
    using Tone = QColor (*)(const QPalette&);

    TonedLabel(const QString& text, Tone tone, QWidget* parent)
        : QLabel(text, parent), m_tone(tone) {
        setTextFormat(Qt::PlainText);
        setAlignment(leading() | Qt::AlignVCenter);
        setForegroundRole(QPalette::WindowText);
        takeTone();
    }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) takeTone();
        QLabel::changeEvent(event);
    }

private:
    void takeTone() {
        QPalette own;
        const QColor color = m_tone(own);
        // Setting the palette leads back here.
        if (palette().color(QPalette::Active, QPalette::WindowText) == color) return;
        // What is disabled has one tone for all.
        own.setColor(QPalette::Active, QPalette::WindowText, color);
        own.setColor(QPalette::Inactive, QPalette::WindowText, color);
        setPalette(own);
    }

    Tone m_tone;
};

void makeBold(QLabel* label, qreal factor) {
    QFont font = label->font();
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    TextSize::scaleFont(*label, factor);
}

} // namespace

Qt::Alignment trailing() {
    return QStyle::visualAlignment(QGuiApplication::layoutDirection(), Qt::AlignRight) |
           Qt::AlignAbsolute;
}

QLabel* body(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(leading() | Qt::AlignVCenter);
    return label;
}

QLabel* heading(const QString& text, QWidget* parent) {
    QLabel* label = muted(text, parent);
    makeBold(label, 0.92);
    return label;
}

QLabel* muted(const QString& text, QWidget* parent) {
    return new TonedLabel(text, Style::mutedText, parent);
}

QLabel* failure(const QString& text, QWidget* parent) {
    return new TonedLabel(text, Style::failure, parent);
}

QLabel* title(const QString& text, qreal factor, QWidget* parent) {
    QLabel* label = body(text, parent);
    makeBold(label, factor);
    return label;
}

} // namespace quillabrae::shell::Labels
