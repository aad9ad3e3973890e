// SPDX-License-Identifier: GPL-3.0-or-later
// The shape and the text that can still be changed.
#include "canvas/DraftHandles.h"
#include "replay/CanvasStage.h"
#include "replay/ScriptError.h"
#include "replay/Session.h"
#include "replay/Verb.h"

namespace quillabrae::replay {
namespace {

using canvas::DraftKind;

DraftKind draftKind(const Arguments& arguments) {
    const QString name = arguments.text("draft");
    if (name == QLatin1StringView("shape")) return DraftKind::shape;
    if (name == QLatin1StringView("text")) return DraftKind::text;
    throw ScriptError(QStringLiteral("\"draft\" must be shape or text"));
}

/// A press on a handle's middle, a drag by canvas pixels and a release.
QJsonValue handle(Session& session, const Arguments& arguments) {
    CanvasStage& stage = session.canvas();
    const DraftKind kind = draftKind(arguments);
    const canvas::DraftGestures& drafts = stage.view().drafts();
    if (!(kind == DraftKind::shape ? drafts.hasShape() : drafts.hasText()))
        throw ScriptError(QStringLiteral("there is no such draft"));
    const QString name = arguments.text("handle");
    const canvas::DraftHandle* found = canvas::draftHandleNamed(kind, name);
    if (found == nullptr)
        throw ScriptError(QStringLiteral("the draft has no handle \"%1\"").arg(name));
    const QPointF from = found->place(drafts.box(kind));
    const QPointF to = from + arguments.point("by") * stage.view().currentZoom();
    stage.press(from, CanvasStage::Space::view);
    stage.drag(to, CanvasStage::Space::view);
    stage.release(to, CanvasStage::Space::view);
    return {};
}

/// Into the text draft, at its caret; "\n" is Return.
QJsonValue type(Session& session, const Arguments& arguments) {
    canvas::CanvasView& view = session.canvas().view();
    if (!view.drafts().hasText()) throw ScriptError(QStringLiteral("no text is being written"));
    const QString text = arguments.text("text");
    view.textDraft().edit([&](canvas::TextEditing& editing, const raster::TextLayout&) {
        for (const QChar c : text) editing.insert(QString(c));
    });
    return {};
}

QJsonValue disappear(Session& session, const Arguments&) {
    session.canvas().view().disappear();
    return {};
}

constexpr Verb verbs[] = {
    {"canvas.handle", "draft handle by", handle},
    {"canvas.type", "text", type},
    {"canvas.disappear", "", disappear},
};

} // namespace

VerbTable draftVerbs() {
    return verbs;
}

} // namespace quillabrae::replay
