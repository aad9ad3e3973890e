// SPDX-License-Identifier: GPL-3.0-or-later
// Pointer, pinch and keys on the canvas.
#include "replay/CanvasStage.h"
#include "replay/CanvasState.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

#include <QJsonArray>

#include <array>
#include <utility>

namespace quillabrae::replay {
namespace {

using Space = CanvasStage::Space;

Space spaceOf(const Arguments& arguments) {
    const QString name = arguments.text("space", QStringLiteral("canvas"));
    if (name == QLatin1StringView("canvas")) return Space::canvas;
    if (name == QLatin1StringView("view")) return Space::view;
    if (name == QLatin1StringView("workspace")) return Space::workspace;
    throw ScriptError(QStringLiteral("\"space\" must be canvas, view or workspace"));
}

bool isRightButton(const Arguments& arguments) {
    const QString name = arguments.text("button", QStringLiteral("left"));
    if (name != QLatin1StringView("left") && name != QLatin1StringView("right"))
        throw ScriptError(QStringLiteral("\"button\" must be left or right"));
    return name == QLatin1StringView("right");
}

canvas::Modifiers modifiersFrom(const QJsonValue& value) {
    canvas::Modifiers keys;
    for (const auto& item : arrayFrom(value, QStringLiteral("modifiers"))) {
        const QString name = textFrom(item, QStringLiteral("modifiers"));
        if (name == QLatin1StringView("shift"))
            keys.shift = true;
        else if (name == QLatin1StringView("option"))
            keys.option = true;
        else if (name == QLatin1StringView("command"))
            keys.command = true;
        else if (name == QLatin1StringView("control"))
            keys.control = true;
        else
            throw ScriptError(QStringLiteral("no modifier is called \"%1\"").arg(name));
    }
    return keys;
}

void takeModifiers(Session& session, const Arguments& arguments) {
    if (arguments.has("modifiers"))
        session.canvas().pointer().keys = modifiersFrom(arguments.value("modifiers"));
    session.canvas().view().modifiersChanged();
}

bool rightButton(Session& session, const Arguments& arguments, QPointF at,
                 canvas::RightMousePhase phase) {
    CanvasStage& stage = session.canvas();
    return stage.view().handleRightMouseEvent({phase, stage.moveTo(at, spaceOf(arguments))});
}

void requireDrag(Session& session) {
    if (!session.canvas().isDragging())
        throw ScriptError(QStringLiteral("there was no press to drag from"));
}

void pressAt(Session& session, const Arguments& arguments, QPointF at) {
    if (isRightButton(arguments))
        rightButton(session, arguments, at, canvas::RightMousePhase::down);
    else
        session.canvas().press(at, spaceOf(arguments));
}

void dragTo(Session& session, const Arguments& arguments, QPointF at) {
    if (isRightButton(arguments)) {
        rightButton(session, arguments, at, canvas::RightMousePhase::dragged);
        return;
    }
    requireDrag(session);
    session.canvas().drag(at, spaceOf(arguments));
}

void releaseAt(Session& session, const Arguments& arguments, QPointF at) {
    if (isRightButton(arguments)) {
        rightButton(session, arguments, at, canvas::RightMousePhase::up);
        return;
    }
    requireDrag(session);
    session.canvas().release(at, spaceOf(arguments));
}

template <void (*sample)(Session&, const Arguments&, QPointF)>
QJsonValue oneSample(Session& session, const Arguments& arguments) {
    takeModifiers(session, arguments);
    sample(session, arguments, arguments.point("at"));
    return {};
}

QJsonValue stroke(Session& session, const Arguments& arguments) {
    takeModifiers(session, arguments);
    const QString key = QStringLiteral("points");
    QList<QPointF> points;
    for (const auto& point : arrayFrom(arguments.value("points"), key))
        points.append(pointFrom(point, key));
    if (points.isEmpty()) throw ScriptError(QStringLiteral("a stroke needs a point"));
    pressAt(session, arguments, points.first());
    for (const QPointF& point : points.mid(1)) dragTo(session, arguments, point);
    releaseAt(session, arguments, points.last());
    return {};
}

QJsonValue viewport(Session& session, const Arguments& arguments) {
    session.canvas().setViewportSize(arguments.size("size"));
    return {};
}

QJsonValue hover(Session& session, const Arguments& arguments) {
    CanvasStage& stage = session.canvas();
    if (arguments.value("at").isNull()) {
        stage.pointer().location.reset();
        stage.view().hoverEnded();
        return {};
    }
    stage.view().hover(stage.moveTo(arguments.point("at"), spaceOf(arguments)));
    return {};
}

QJsonValue modifiers(Session& session, const Arguments& arguments) {
    takeModifiers(session, arguments);
    return {};
}

/// Whether the canvas took the key.
QJsonValue key(Session& session, const Arguments& arguments) {
    using canvas::CanvasKey;
    static constexpr std::array<std::pair<QLatin1StringView, CanvasKey>, 7> keys{{
        {QLatin1StringView("escape"), CanvasKey::escape},
        {QLatin1StringView("left"), CanvasKey::left},
        {QLatin1StringView("right"), CanvasKey::right},
        {QLatin1StringView("up"), CanvasKey::up},
        {QLatin1StringView("down"), CanvasKey::down},
        {QLatin1StringView("space"), CanvasKey::space},
        {QLatin1StringView("enter"), CanvasKey::enter},
    }};
    takeModifiers(session, arguments);
    const QString name = arguments.text("key");
    for (const auto& [keyName, canvasKey] : keys) {
        if (name == keyName) return session.canvas().view().handleKey(canvasKey);
    }
    throw ScriptError(QStringLiteral("no key is called \"%1\"").arg(name));
}

/// Whether the canvas took the event.
QJsonValue magnify(Session& session, const Arguments& arguments) {
    CanvasStage& stage = session.canvas();
    const double timestamp = arguments.number("timestamp", session.time().now());
    const QPointF at = stage.moveTo(arguments.point("at"), spaceOf(arguments));
    return stage.view().handleMagnifyEvent({arguments.number("magnification"), timestamp, at});
}

/// Whether the zoom changed.
QJsonValue wheel(Session& session, const Arguments& arguments) {
    CanvasStage& stage = session.canvas();
    stage.moveTo(arguments.point("at"), spaceOf(arguments));
    return stage.view().applyWheelZoom(arguments.number("notches"));
}

QJsonValue state(Session& session, const Arguments&) {
    return canvasState(session);
}

constexpr const char* sampleKeys = "at space? button? modifiers?";

constexpr Verb verbs[] = {
    {"canvas.viewport", "size", viewport},
    {"canvas.press", sampleKeys, oneSample<pressAt>},
    {"canvas.drag", sampleKeys, oneSample<dragTo>},
    {"canvas.release", sampleKeys, oneSample<releaseAt>},
    {"canvas.stroke", "points space? button? modifiers?", stroke},
    {"canvas.hover", "at space?", hover},
    {"canvas.modifiers", "modifiers", modifiers},
    {"canvas.key", "key modifiers?", key},
    {"canvas.magnify", "magnification timestamp? at space?", magnify},
    {"canvas.wheel", "notches at space?", wheel},
    {"canvas.state", "", state},
};

} // namespace

VerbTable canvasVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
