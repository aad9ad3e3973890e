// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/Labels.h"

#include "shell/looks/Style.h"

#include <QEvent>
#include <QLabel>

namespace quillabrae::shell::Labels {
namespace {

/// A label whose muted colour follows a change of the program's palette.
class MutedLabel final : public QLabel {
public:
    MutedLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
        setForegroundRole(QPalette::WindowText);
        dim();
    }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) dim();
        QLabel::changeEvent(event);
    }

private:
    void dim() {
        QPalette own;
        const QColor muted = Style::mutedText(own);
        // Setting the palette leads back here.
        if (palette().color(QPalette::WindowText) == muted) return;
        own.setColor(QPalette::WindowText, muted);
        setPalette(own);
    }
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
    auto* label = new MutedLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* title(const QString& text, qreal factor, QWidget* parent) {
    QLabel* label = body(text, parent);
    scaleFont(label, factor, QFont::DemiBold);
    return label;
}

} // namespace quillabrae::shell::Labels
