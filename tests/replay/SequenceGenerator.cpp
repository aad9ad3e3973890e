// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SequenceGenerator.h"

#include "canvas/DraftHandles.h"
#include "canvas/SelectionHandle.h"
#include "model/PaintTool.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

namespace quillabrae::replay {
namespace {

/// Canvas sizes, the odd ones among them.
constexpr std::array<std::pair<int, int>, 9> canvasSizes{
    {{1, 1}, {1, 9}, {3, 2}, {16, 9}, {33, 17}, {64, 48}, {5, 120}, {120, 7}, {90, 60}}};
constexpr std::size_t mostTabs = 4;

QString layerCount(const Session& session) {
    const model::PaintProject* project = session.store().activeProject();
    return QString::number(project == nullptr ? 0 : project->layers.size());
}

} // namespace

SequenceGenerator::SequenceGenerator(unsigned seed) : m_random(seed) {
    // Something to paste, to import and to drop.
    add(R"({"do": "store.createUntitledProject", "width": 24, "height": 20, "resolutionDPI": 96})");
    add(R"({"do": "set", "selectedTool": "gradient"})");
    add(R"({"do": "canvas.stroke", "points": [[0, 0], [24, 20]]})");
    add(R"({"do": "save.picture", "of": "layer", "index": 0, "to": "~/a.png"})");
    add(R"({"do": "save.picture", "of": "layer", "index": 0, "to": "~/b.png"})");
    add(R"({"do": "clipboard.put", "types": {"image/png": "~/a.png"}})");
}

std::span<const SequenceGenerator::Choice> SequenceGenerator::choices() {
    using Self = SequenceGenerator;
    static constexpr std::array table{
        Choice{30, &Self::gesture},       Choice{14, &Self::tool},
        Choice{6, &Self::setting},        Choice{5, &Self::undo},
        Choice{4, &Self::redo},           Choice{4, &Self::undoAndRedo},
        Choice{2, &Self::restoreHistory}, Choice{8, &Self::layerCommand},
        Choice{4, &Self::layerPatch},     Choice{7, &Self::selectionCommand},
        Choice{6, &Self::paste},          Choice{6, &Self::transform},
        Choice{4, &Self::adjustment},     Choice{5, &Self::key},
        Choice{3, &Self::escape},         Choice{5, &Self::handle},
        Choice{4, &Self::type},           Choice{3, &Self::view},
        Choice{2, &Self::modifiers},      Choice{2, &Self::pointer},
        Choice{2, &Self::newTab},         Choice{3, &Self::otherTab},
        Choice{1, &Self::closeTab},       Choice{1, &Self::picture},
        Choice{2, &Self::file},           Choice{1, &Self::restart},
    };
    return table;
}

/// What may come in the middle of a gesture.
std::span<const SequenceGenerator::Choice> SequenceGenerator::interruptions() {
    using Self = SequenceGenerator;
    static constexpr std::array table{
        Choice{6, &Self::modifiers},    Choice{3, &Self::view},
        Choice{3, &Self::tool},         Choice{2, &Self::setting},
        Choice{3, &Self::undo},         Choice{1, &Self::redo},
        Choice{2, &Self::key},          Choice{1, &Self::escape},
        Choice{2, &Self::layerCommand}, Choice{2, &Self::selectionCommand},
        Choice{1, &Self::paste},        Choice{2, &Self::transform},
        Choice{1, &Self::otherTab},     Choice{1, &Self::closeTab},
    };
    return table;
}

QByteArray SequenceGenerator::next(Session& session) {
    constexpr int interruptionPercent = 8;
    if (m_lines.empty()) {
        if (session.store().openProjects().empty() && chance(80))
            newTab(session);
        else
            write(choices(), session);
    } else if ((m_isLeftDown || m_isRightDown) && chance(interruptionPercent)) {
        const std::deque<QByteArray> rest = std::exchange(m_lines, {});
        write(interruptions(), session);
        m_lines.insert(m_lines.end(), rest.begin(), rest.end());
    }
    if (m_lines.empty()) return next(session);
    const QByteArray line = m_lines.front();
    m_lines.pop_front();
    const bool isRight = line.contains(R"("button": "right")");
    if (line.contains("canvas.press")) (isRight ? m_isRightDown : m_isLeftDown) = true;
    if (line.contains("canvas.release")) (isRight ? m_isRightDown : m_isLeftDown) = false;
    if (line == restartLine) m_isRightDown = m_isLeftDown = false;
    return line;
}

void SequenceGenerator::write(std::span<const Choice> table, Session& session) {
    const int all = std::accumulate(table.begin(), table.end(), 0,
                                    [](int sum, const Choice& row) { return sum + row.weight; });
    int drawn = whole(1, all);
    for (const Choice& row : table) {
        drawn -= row.weight;
        if (drawn <= 0) return (this->*row.write)(session);
    }
}

// Chance

int SequenceGenerator::whole(int least, int most) {
    return std::uniform_int_distribution(least, most)(m_random);
}

double SequenceGenerator::real(double least, double most) {
    return std::uniform_real_distribution(least, most)(m_random);
}

QString SequenceGenerator::oneOf(std::initializer_list<const char*> texts) {
    return QString::fromLatin1(texts.begin()[whole(0, static_cast<int>(texts.size()) - 1)]);
}

/// Half of them whole, as a mouse gives them.
QString SequenceGenerator::number(double least, double most) {
    const double drawn = real(least, most);
    return QString::number(chance(50) ? std::round(drawn) : drawn, 'f', 2);
}

QString SequenceGenerator::color() {
    if (chance(40)) return oneOf({"[1, 0, 0, 1]", "[0, 0, 1, 1]", "[1, 1, 1, 1]"});
    return QStringLiteral("[%1, %2, %3, %4]")
        .arg(number(0, 1), number(0, 1), number(0, 1), number(0, 1));
}

QString SequenceGenerator::heldKeys() {
    QStringList keys;
    for (const char* key : {"shift", "option", "command"}) {
        if (chance(12)) keys << QStringLiteral("\"%1\"").arg(QLatin1StringView(key));
    }
    return QStringLiteral("[%1]").arg(keys.join(QStringLiteral(", ")));
}

/// On the canvas, on its edges, near it, or on a handle or the middle of the selection.
QString SequenceGenerator::canvasPoint(Session& session) {
    const canvas::CanvasGeometry geometry = session.canvas().view().geometry();
    const model::PaintProject* project = session.store().activeProject();
    const auto text = [](QPointF at) {
        return QStringLiteral("[%1, %2]").arg(at.x(), 0, 'f', 2).arg(at.y(), 0, 'f', 2);
    };
    const auto selection = project == nullptr ? std::nullopt : canvas::currentSelection(*project);
    if (selection && chance(30)) {
        const QRectF rect = canvas::rectOf(*selection);
        const auto handle = canvas::allSelectionHandles.at(static_cast<std::size_t>(whole(0, 7)));
        return text(chance(50) ? rect.center() : canvas::handlePoint(handle, rect));
    }
    constexpr double margin = 40.0;
    const double around = chance(15) ? margin : 0.0;
    return QStringLiteral("[%1, %2]")
        .arg(number(-around, geometry.canvasWidth + around),
             number(-around, geometry.canvasHeight + around));
}

/// The keys of a press at a canvas point: off the interactive view the workspace takes it.
QString SequenceGenerator::place(Session& session, const QString& point) {
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

// The canvas

void SequenceGenerator::gesture(Session& session) {
    if (m_isLeftDown || m_isRightDown) return anyButtonUp(session);
    const bool isRight = chance(20);
    const QString button = isRight ? QStringLiteral(R"(, "button": "right")") : QString();
    add(QStringLiteral(R"({"do": "canvas.press", %1, "modifiers": %2%3})")
            .arg(place(session, canvasPoint(session)), heldKeys(), button));
    const QString last = canvasPoint(session);
    for (int samples = whole(0, 4); samples > 0; --samples) {
        add(QStringLiteral(R"({"do": "canvas.drag", "at": %1%2})")
                .arg(canvasPoint(session), button));
    }
    // Let go off the canvas, the right button is not seen to be released.
    add(QStringLiteral(R"({"do": "canvas.release", "at": %1%2})").arg(last, button));
}

void SequenceGenerator::anyButtonUp(Session& session) {
    add(QStringLiteral(R"({"do": "canvas.release", "at": %1%2})")
            .arg(canvasPoint(session),
                 m_isRightDown ? QStringLiteral(R"(, "button": "right")") : QString()));
}

void SequenceGenerator::modifiers(Session&) {
    add(QStringLiteral(R"({"do": "canvas.modifiers", "modifiers": %1})").arg(heldKeys()));
}

void SequenceGenerator::pointer(Session& session) {
    if (chance(20)) return add(R"({"do": "canvas.hover", "at": null})");
    add(QStringLiteral(R"({"do": "canvas.hover", "at": %1})").arg(canvasPoint(session)));
}

void SequenceGenerator::key(Session&) {
    for (int times = whole(1, 3); times > 0; --times)
        add(QStringLiteral(R"({"do": "canvas.key", "key": "%1", "modifiers": %2})")
                .arg(oneOf({"left", "right", "up", "down"}), heldKeys()));
}

void SequenceGenerator::escape(Session&) {
    add(chance(80) ? R"({"do": "canvas.key", "key": "escape", "modifiers": []})"
                   : R"({"do": "canvas.disappear"})");
}

void SequenceGenerator::handle(Session& session) {
    const canvas::DraftGestures& drafts = session.canvas().view().drafts();
    if (m_isLeftDown || (!drafts.hasShape() && !drafts.hasText())) return gesture(session);
    const bool isShape = drafts.hasShape();
    add(QStringLiteral(R"({"do": "canvas.handle", "draft": "%1", "handle": "%2", "by": [%3, %4]})")
            .arg(isShape ? QStringLiteral("shape") : QStringLiteral("text"),
                 isShape ? oneOf({"topLeft", "top", "right", "bottomRight", "left"})
                         : oneOf({"horizontal", "vertical", "both", "move"}),
                 number(-60, 60), number(-60, 60)));
}

void SequenceGenerator::type(Session& session) {
    if (!session.canvas().view().drafts().hasText())
        return add(R"({"do": "set", "selectedTool": "text"})");
    add(QStringLiteral(R"({"do": "canvas.type", "text": "%1"})")
            .arg(oneOf({"a", " ", "Wort", "\\n", "two words", "\u00e4\u00f6"})));
}

void SequenceGenerator::tool(Session&) {
    const auto tools = model::allPaintTools();
    const auto index = static_cast<std::size_t>(whole(0, static_cast<int>(tools.size()) - 1));
    add(QStringLiteral(R"({"do": "set", "selectedTool": "%1"})").arg(rawText(tools.at(index))));
}

void SequenceGenerator::setting(Session&) {
    switch (whole(0, 9)) {
        case 0:
            return add(QStringLiteral(R"({"do": "set", "brushSize": %1})").arg(number(1, 40)));
        case 1:
            return add(
                QStringLiteral(R"({"do": "set", "pencilHardness": %1})").arg(number(0, 100)));
        case 2:
            return add(QStringLiteral(R"({"do": "set", "primaryColor": %1})").arg(color()));
        case 3:
            return add(QStringLiteral(R"({"do": "set", "secondaryColor": %1})").arg(color()));
        case 4:
            return add(QStringLiteral(R"({"do": "set", "magicWandMatchPercentage": %1})")
                           .arg(number(0, 100)));
        case 5:
            return add(QStringLiteral(R"({"do": "set", "paintBucketMatchPercentage": %1})")
                           .arg(number(0, 100)));
        case 6:
            return add(QStringLiteral(
                           R"({"do": "set", "shapeDrawingMode": "%1", "shapeOutlineWidth": %2})")
                           .arg(oneOf({"fill", "outline", "fillAndOutline"}))
                           .arg(whole(1, 9)));
        case 7:
            return add(QStringLiteral(R"({"do": "set", "textFontSize": %1, "textBold": %2})")
                           .arg(number(4, 40), flag()));
        case 8:
            return add(QStringLiteral(R"({"do": "set", "zoomScale": %1})")
                           .arg(oneOf({"0.1", "0.37", "1", "2.5", "8", "64"})));
        default:
            return add(QStringLiteral(R"({"do": "set", "showsPixelGrid": %1})").arg(flag()));
    }
}

void SequenceGenerator::view(Session& session) {
    switch (whole(0, 4)) {
        case 0:
            return add(QStringLiteral(R"({"do": "wait", "seconds": %1})").arg(number(0, 1)));
        case 1:
            return add(QStringLiteral(R"({"do": "canvas.magnify", "magnification": %1, "at": %2})")
                           .arg(number(-1, 1), canvasPoint(session)));
        case 2:
            return add(QStringLiteral(R"({"do": "canvas.wheel", "notches": %1, "at": %2})")
                           .arg(number(-2, 2), canvasPoint(session)));
        case 3:
            return add(QStringLiteral(R"({"do": "canvas.viewport", "size": [%1, %2]})")
                           .arg(whole(100, 900))
                           .arg(whole(100, 700)));
        default:
            return add(R"({"do": "store.performZoomToFitCanvas", "updatesStatus": true})");
    }
}

// History

void SequenceGenerator::undo(Session&) {
    for (int times = whole(1, 3); times > 0; --times)
        add(R"({"do": "store.undo", "projectID": "active"})");
}

void SequenceGenerator::redo(Session&) {
    add(R"({"do": "store.redo", "projectID": "active"})");
}

void SequenceGenerator::undoAndRedo(Session&) {
    add(R"({"do": "store.undo", "projectID": "active"})");
    add(R"({"do": "store.redo", "projectID": "active"})");
}

void SequenceGenerator::restoreHistory(Session& session) {
    const auto& projects = session.store().openProjects();
    if (projects.empty()) return;
    const int tab = whole(0, static_cast<int>(projects.size()) - 1);
    const auto& entries =
        session.store().history(projects[static_cast<std::size_t>(tab)].id).entries;
    add(QStringLiteral(R"({"do": "store.restoreHistory", "projectID": %1, "entryID": %2})")
            .arg(tab)
            .arg(whole(0, std::max(static_cast<int>(entries.size()) - 1, 0))));
}

// Commands

void SequenceGenerator::addCommand(std::initializer_list<const char*> names) {
    add(QStringLiteral(R"({"do": "store.%1"})").arg(oneOf(names)));
}

void SequenceGenerator::layerCommand(Session& session) {
    const QString last = QString::number(std::max(layerCount(session).toInt() - 1, 0));
    switch (whole(0, 4)) {
        case 0:
            return add(QStringLiteral(R"({"do": "store.moveSelectedLayer", "by": %1})")
                           .arg(chance(50) ? 1 : -1));
        case 1:
            return add(QStringLiteral(R"({"do": "store.flattenLayerDown", "layerID": %1})")
                           .arg(whole(0, last.toInt())));
        case 2:
            return add(
                QStringLiteral(
                    R"({"do": "store.applySelectedLayerProperties", "result": {"name": "L", "opacity": %1, "isVisible": %2, "isLocked": %3}})")
                    .arg(number(0, 1),
                         chance(75) ? QStringLiteral("true") : QStringLiteral("false"),
                         chance(25) ? QStringLiteral("true") : QStringLiteral("false")));
        case 3:
            add(R"({"do": "answer", "prompt": "importImage", "with": "~/b.png"})");
            return addCommand({"importLayerFromFile"});
        default:
            // Not too many layers, or every later step takes long.
            if (last.toInt() > 3) return addCommand({"deleteSelectedLayer"});
            return addCommand({"addLayer", "duplicateSelectedLayer", "deleteSelectedLayer"});
    }
}

/// As the layers panel does it: choosing a layer, its eye, its lock.
void SequenceGenerator::layerPatch(Session& session) {
    const int count = layerCount(session).toInt();
    if (count == 0) return;
    const int index = whole(0, count - 1);
    if (chance(60))
        return add(QStringLiteral(R"({"do": "project", "selectedLayerID": %1})").arg(index));
    QStringList patches(index, QStringLiteral("{}"));
    patches << QStringLiteral(R"({"%1": %2})").arg(oneOf({"isVisible", "isLocked"}), flag());
    add(QStringLiteral(R"({"do": "project", "layers": [%1]})")
            .arg(patches.join(QStringLiteral(", "))));
}

void SequenceGenerator::selectionCommand(Session&) {
    addCommand({"selectAllCanvas", "dropSelection", "dropSelection", "copySelectedCanvasPixels",
                "copySelectedCanvasPixels", "cutSelectedCanvasPixels"});
}

void SequenceGenerator::paste(Session&) {
    if (chance(20)) {
        add(QStringLiteral(R"({"do": "clipboard.put", "types": {"image/png": "~/%1.png"}})")
                .arg(oneOf({"a", "b"})));
    }
    // The answer waits for a picture that does not fit.
    add(QStringLiteral(R"({"do": "answer", "prompt": "paste", "with": "%1"})")
            .arg(oneOf({"openAsNewProject", "expandCanvas", "keepCanvasSize", "keepCanvasSize"})));
    add(chance(80) ? R"({"do": "paste"})" : R"({"do": "drop", "paths": ["~/b.png"]})");
    if (chance(60)) add(R"({"do": "set", "selectedTool": "moveSelectedPixels"})");
}

void SequenceGenerator::transform(Session&) {
    switch (whole(0, 6)) {
        case 0:
            return add(
                QStringLiteral(
                    R"({"do": "store.resizeActiveImage", "to": {"width": %1, "height": %2}})")
                    .arg(whole(1, 100))
                    .arg(whole(1, 80)));
        case 1:
            return add(
                QStringLiteral(
                    R"({"do": "store.resizeActiveCanvas", "to": {"width": %1, "height": %2, "anchor": "%3"}})")
                    .arg(whole(1, 100))
                    .arg(whole(1, 80))
                    .arg(oneOf({"center", "topLeft", "bottomRight", "left", "top"})));
        case 2:
            return add(
                QStringLiteral(
                    R"({"do": "store.rotateZoomSelectedLayer", "result": {"angleDegrees": %1, "zoomPercentage": %2}})")
                    .arg(number(-180, 180), number(10, 300)));
        case 3:
            return add(QStringLiteral(R"({"do": "store.flipSelectedLayer", "horizontal": %1})")
                           .arg(flag()));
        case 4:
            return addCommand({"trimTransparentWhitespace"});
        default:
            return addCommand({"invertActiveImage", "repeatLastAction"});
    }
}

/// A dialog from its opening to its end: nothing else runs meanwhile.
void SequenceGenerator::adjustment(Session&) {
    const auto align = [&](const char* operation) {
        add(QStringLiteral(R"({"do": "store.%1", "action": "%2"})")
                .arg(QLatin1StringView(operation),
                     oneOf({"topLeft", "center", "bottomRight", "horizontalCenter"})));
    };
    const auto removal = [&] {
        add(QStringLiteral(
                R"({"do": "store.previewColorRemoval", "settings": {"preset": "%1", "tolerancePercentage": %2, "transparentAlphaThresholdPercentage": %3}})")
                .arg(oneOf({"white", "primary", "red"}), number(0, 100), number(0, 100)));
    };
    const bool aligns = chance(50);
    addCommand({aligns ? "beginAlignObjectPreview" : "beginColorRemovalPreview"});
    for (int tries = whole(0, 3); tries > 0; --tries) {
        if (aligns)
            align("previewAlignObject");
        else
            removal();
    }
    const char* end = chance(60)
                          ? (aligns ? "commitAlignObjectPreview" : "commitColorRemovalPreview")
                          : (aligns ? "cancelAlignObjectPreview" : "cancelColorRemovalPreview");
    addCommand({end});
}

// Tabs, files, starts

void SequenceGenerator::newTab(Session& session) {
    if (session.store().openProjects().size() >= mostTabs) return closeTab(session);
    const auto [width, height] = canvasSizes.at(
        static_cast<std::size_t>(whole(0, static_cast<int>(canvasSizes.size()) - 1)));
    add(QStringLiteral(
            R"({"do": "store.createUntitledProject", "width": %1, "height": %2, "resolutionDPI": 96})")
            .arg(width)
            .arg(height));
}

void SequenceGenerator::otherTab(Session& session) {
    const int count = static_cast<int>(session.store().openProjects().size());
    if (count < 2) return newTab(session);
    add(QStringLiteral(R"({"do": "set", "activeProjectID": %1})").arg(whole(0, count - 1)));
}

void SequenceGenerator::closeTab(Session& session) {
    const int count = static_cast<int>(session.store().openProjects().size());
    if (count == 0) return;
    add(QStringLiteral(R"({"do": "store.closeProject", "id": %1})").arg(whole(0, count - 1)));
}

void SequenceGenerator::picture(Session&) {
    add(QStringLiteral(R"({"do": "save.picture", "of": "%1", "index": 0, "to": "~/b.png"})")
            .arg(oneOf({"layer", "flattened"})));
}

/// A save, often with the file opened again right away.
void SequenceGenerator::file(Session& session) {
    const auto index = session.store().activeIndex();
    if (!index) return;
    const QString name = oneOf({"~/x.quillabrae", "~/y.quillabrae"});
    if (chance(70)) {
        add(QStringLiteral(
                R"({"do": "store.saveProject", "at": %1, "to": {"url": "%2", "format": "project"}})")
                .arg(*index)
                .arg(name));
    }
    if (chance(60)) add(QStringLiteral(R"({"do": "store.openProject", "at": "%1"})").arg(name));
}

void SequenceGenerator::restart(Session&) {
    add(R"({"do": "store.persistAutosavedSession"})");
    m_lines.push_back(restartLine.toByteArray());
}

} // namespace quillabrae::replay
