// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/Labels.h"

#include "shell/looks/Style.h"

#include <QEvent>
#include <QLabel>

namespace quillabrae::shell::Labels {
namespace {

/// A label whose own colour follows a change of the program's palette.
class TonedLabel final : public QLabel {
public:
    using Tone = QColor (*)(const QPalette&);

    TonedLabel(const QString& text, Tone tone, QWidget* parent)
        : QLabel(text, parent), m_tone(tone) {
        setTextFormat(Qt::PlainText);
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
        if (palette().color(QPalette::WindowText) == color) return;
        own.setColor(QPalette::WindowText, color);
        setPalette(own);
    }

    Tone m_tone;
};

void scaleFont(QLabel* label, qreal factor, QFont::Weight weight) {
    QFont font = label->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(font.pixelSize() * factor));
    font.setWeight(weight);
    label->setFont(font);
}

} // namespace

QLabel* body(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* heading(const QString& text, QWidget* parent) {
    QLabel* label = muted(text, parent);
    scaleFont(label, 0.92, QFont::DemiBold);
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
    scaleFont(label, factor, QFont::DemiBold);
    return label;
}

} // namespace quillabrae::shell::Labels
