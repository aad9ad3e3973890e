// SPDX-License-Identifier: GPL-3.0-or-later
// Another program to drag from: a small window whose content, pulled with the pointer, is what the
// arguments say, each a type and the file with its bytes ("image/png=cat.png"). Prints a word for
// the end of each drag: "taken" or "refused".
#include <QDrag>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QTextStream>

#include <memory>
#include <utility>

namespace {

/// The forms in the order in which they were given.
std::unique_ptr<QMimeData> contentsOf(const QStringList& forms) {
    auto contents = std::make_unique<QMimeData>();
    for (const QString& form : forms) {
        const qsizetype end = form.indexOf(u'=');
        QFile file(form.mid(end + 1));
        if (end < 0 || !file.open(QIODevice::ReadOnly)) qFatal("cannot drag %s", qPrintable(form));
        contents->setData(form.left(end), file.readAll());
    }
    return contents;
}

class Source final : public QRasterWindow {
public:
    explicit Source(QStringList forms) : m_forms(std::move(forms)) {
        setTitle(QStringLiteral("Drag source"));
        // Beside what the window manager arranges, and over it.
        setFlags(Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
        setGeometry(4, 4, 40, 40);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(QRect({}, size()), Qt::darkCyan);
    }

    void mouseMoveEvent(QMouseEvent* event) override {
        if (!event->buttons().testFlag(Qt::LeftButton) || m_isDragging) return;
        m_isDragging = true;
        // The drag takes its contents, and goes with the window.
        auto* drag = new QDrag(this);
        drag->setMimeData(contentsOf(m_forms).release());
        const bool isTaken = drag->exec(Qt::CopyAction) != Qt::IgnoreAction;
        QTextStream(stdout) << (isTaken ? "taken" : "refused") << Qt::endl;
        m_isDragging = false;
    }

private:
    QStringList m_forms;
    bool m_isDragging = false;
};

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    Source source(QCoreApplication::arguments().mid(1));
    source.show();
    return QCoreApplication::exec();
}
