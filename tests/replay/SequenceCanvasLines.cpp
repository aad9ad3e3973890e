// SPDX-License-Identifier: GPL-3.0-or-later
// Lines that work on the canvas: pointer, keys, drafts, tools, the view.
#include "canvas/DraftHandles.h"
#include "canvas/SelectionHandle.h"
#include "model/PaintTool.h"
#include "replay/SequenceLines.h"
#include "replay/SequenceWriter.h"
#include "replay/Session.h"

#include <QStringList>

namespace quillabrae::replay::lines {
namespace {

/// On the canvas, on its edges, near it, or on a handle or the middle of the selection.
QString canvasPoint(SequenceWriter& writer, Session& session) {
    const canvas::CanvasGeometry geometry = session.canvas().view().geometry();
    const model::PaintProject* project = session.store().activeProject();
    const auto text = [](QPointF at) {
        return QStringLiteral("[%1, %2]").arg(at.x(), 0, 'f', 2).arg(at.y(), 0, 'f', 2);
    };
    const auto selection = project == nullptr ? std::nullopt : canvas::currentSelection(*project);
    if (selection && writer.chance(30)) {
        const QRectF rect = canvas::rectOf(*selection);
        const auto handle =
            canvas::allSelectionHandles.at(static_cast<std::size_t>(writer.whole(0, 7)));
        return text(writer.chance(50) ? rect.center() : canvas::handlePoint(handle, rect));
    }
    constexpr double margin = 40.0;
    const double around = writer.chance(15) ? margin : 0.0;
    return QStringLiteral("[%1, %2]")
        .arg(writer.number(-around, geometry.canvasWidth + around),
             writer.number(-around, geometry.canvasHeight + around));
}

/// The keys of a press at a canvas point: off the interactive view the workspace takes it.
QString place(Session& session, const QString& point) {
    const canvas::CanvasView& view = session.canvas().view();
    const QStringList parts = point.mid(1, point.size() - 2).split(QStringLiteral(", "));
    const double zoom = view.currentZoom();
    const QPointF document =
        view.geometry().interactiveViewPoint({parts[0].toDouble(), parts[1].toDouble()}, zoom) +
        view.geometry().canvasPaddings(zoom);
    if (view.surfaceAt(document) == canvas::Surface::interactiveView)
        return QStringLiteral(R"("at": %1)").arg(point);
    return QStringLiteral(R"("at": [%1, %2], "space": "workspace")")
        .arg(document.x(), 0, 'f', 2)
        .arg(document.y(), 0, 'f', 2);
}

void anyButtonUp(SequenceWriter& writer, Session& session) {
    writer.add(QStringLiteral(R"({"do": "canvas.release", "at": %1%2})")
                   .arg(canvasPoint(writer, session), writer.isRightDown()
                                                          ? QStringLiteral(R"(, "button": "right")")
                                                          : QString()));
}

} // namespace

void gesture(SequenceWriter& writer, Session& session) {
    if (writer.isLeftDown() || writer.isRightDown()) return anyButtonUp(writer, session);
    const bool isRight = writer.chance(20);
    const QString button = isRight ? QStringLiteral(R"(, "button": "right")") : QString();
    writer.add(QStringLiteral(R"({"do": "canvas.press", %1, "modifiers": %2%3})")
                   .arg(place(session, canvasPoint(writer, session)), writer.heldKeys(), button));
    const QString last = canvasPoint(writer, session);
    for (int samples = writer.whole(0, 4); samples > 0; --samples) {
        writer.add(QStringLiteral(R"({"do": "canvas.drag", "at": %1%2})")
                       .arg(canvasPoint(writer, session), button));
    }
    // Let go off the canvas, the right button is not seen to be released.
    writer.add(QStringLiteral(R"({"do": "canvas.release", "at": %1%2})").arg(last, button));
}

void modifiers(SequenceWriter& writer, Session&) {
    writer.add(
        QStringLiteral(R"({"do": "canvas.modifiers", "modifiers": %1})").arg(writer.heldKeys()));
}

void pointer(SequenceWriter& writer, Session& session) {
    if (writer.chance(20)) return writer.add(R"({"do": "canvas.hover", "at": null})");
    writer.add(
        QStringLiteral(R"({"do": "canvas.hover", "at": %1})").arg(canvasPoint(writer, session)));
}

void key(SequenceWriter& writer, Session&) {
    for (int times = writer.whole(1, 3); times > 0; --times)
        writer.add(QStringLiteral(R"({"do": "canvas.key", "key": "%1", "modifiers": %2})")
                       .arg(writer.oneOf({"left", "right", "up", "down"}), writer.heldKeys()));
}

void escape(SequenceWriter& writer, Session&) {
    writer.add(writer.chance(80) ? R"({"do": "canvas.key", "key": "escape", "modifiers": []})"
                                 : R"({"do": "canvas.disappear"})");
}

void handle(SequenceWriter& writer, Session& session) {
    const canvas::DraftGestures& drafts = session.canvas().view().drafts();
    if (writer.isLeftDown() || (!drafts.hasShape() && !drafts.hasText()))
        return gesture(writer, session);
    const bool isShape = drafts.hasShape();
    writer.add(
        QStringLiteral(R"({"do": "canvas.handle", "draft": "%1", "handle": "%2", "by": [%3, %4]})")
            .arg(isShape ? QStringLiteral("shape") : QStringLiteral("text"),
                 isShape ? writer.oneOf({"topLeft", "top", "right", "bottomRight", "left"})
                         : writer.oneOf({"horizontal", "vertical", "both", "move"}),
                 writer.number(-60, 60), writer.number(-60, 60)));
}

void type(SequenceWriter& writer, Session& session) {
    if (!session.canvas().view().drafts().hasText())
        return writer.add(R"({"do": "set", "selectedTool": "text"})");
    writer.add(QStringLiteral(R"({"do": "canvas.type", "text": "%1"})")
                   .arg(writer.oneOf({"a", " ", "Wort", "\\n", "two words", "\u00e4\u00f6"})));
}

void tool(SequenceWriter& writer, Session&) {
    const auto tools = model::allPaintTools();
    const auto index =
        static_cast<std::size_t>(writer.whole(0, static_cast<int>(tools.size()) - 1));
    writer.add(
        QStringLiteral(R"({"do": "set", "selectedTool": "%1"})").arg(rawText(tools.at(index))));
}

void setting(SequenceWriter& writer, Session&) {
    switch (writer.whole(0, 9)) {
        case 0:
            return writer.add(
                QStringLiteral(R"({"do": "set", "brushSize": %1})").arg(writer.number(1, 40)));
        case 1:
            return writer.add(QStringLiteral(R"({"do": "set", "pencilHardness": %1})")
                                  .arg(writer.number(0, 100)));
        case 2:
            return writer.add(
                QStringLiteral(R"({"do": "set", "primaryColor": %1})").arg(writer.color()));
        case 3:
            return writer.add(
                QStringLiteral(R"({"do": "set", "secondaryColor": %1})").arg(writer.color()));
        case 4:
            return writer.add(QStringLiteral(R"({"do": "set", "magicWandMatchPercentage": %1})")
                                  .arg(writer.number(0, 100)));
        case 5:
            return writer.add(QStringLiteral(R"({"do": "set", "paintBucketMatchPercentage": %1})")
                                  .arg(writer.number(0, 100)));
        case 6:
            return writer.add(
                QStringLiteral(
                    R"({"do": "set", "shapeDrawingMode": "%1", "shapeOutlineWidth": %2})")
                    .arg(writer.oneOf({"fill", "outline", "fillAndOutline"}))
                    .arg(writer.whole(1, 9)));
        case 7:
            return writer.add(QStringLiteral(R"({"do": "set", "textFontSize": %1, "textBold": %2})")
                                  .arg(writer.number(4, 40), writer.flag()));
        case 8:
            return writer.add(QStringLiteral(R"({"do": "set", "zoomScale": %1})")
                                  .arg(writer.oneOf({"0.1", "0.37", "1", "2.5", "8", "64"})));
        default:
            return writer.add(
                QStringLiteral(R"({"do": "set", "showsPixelGrid": %1})").arg(writer.flag()));
    }
}

void view(SequenceWriter& writer, Session& session) {
    switch (writer.whole(0, 4)) {
        case 0:
            return writer.add(
                QStringLiteral(R"({"do": "wait", "seconds": %1})").arg(writer.number(0, 1)));
        case 1:
            return writer.add(
                QStringLiteral(R"({"do": "canvas.magnify", "magnification": %1, "at": %2})")
                    .arg(writer.number(-1, 1), canvasPoint(writer, session)));
        case 2:
            return writer.add(QStringLiteral(R"({"do": "canvas.wheel", "notches": %1, "at": %2})")
                                  .arg(writer.number(-2, 2), canvasPoint(writer, session)));
        case 3:
            return writer.add(QStringLiteral(R"({"do": "canvas.viewport", "size": [%1, %2]})")
                                  .arg(writer.whole(100, 900))
                                  .arg(writer.whole(100, 700)));
        default:
            return writer.add(R"({"do": "store.performZoomToFitCanvas", "updatesStatus": true})");
    }
}

/// The keyboard's pixel is moved, and often pressed, moved on and let go, or given up.
void keyboard(SequenceWriter& writer, Session& session) {
    const auto move = [&] {
        for (int times = writer.whole(1, 3); times > 0; --times)
            writer.add(QStringLiteral(R"({"do": "canvas.key", "key": "%1", "modifiers": [%2]})")
                           .arg(writer.oneOf({"left", "right", "up", "down"}),
                                writer.oneOf({R"("command", "option")",
                                              R"("command", "option", "shift")"})));
    };
    const auto press = [&](const QString& key) {
        writer.add(
            QStringLiteral(R"({"do": "canvas.key", "key": "%1", "modifiers": []})").arg(key));
    };
    move();
    if (!session.canvas().view().keyboardPointer().isPressed()) {
        press(QStringLiteral("space"));
        move();
    }
    if (writer.chance(85)) press(writer.oneOf({"space", "space", "enter", "escape"}));
}

} // namespace quillabrae::replay::lines
