// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/ScriptedPanels.h"

#include "persistence/SVGImportService.h"
#include "replay/Arguments.h"
#include "replay/ScriptError.h"
#include "store/PromptTexts.h"

#include <QFileInfo>
#include <QJsonObject>
#include <QStringList>

namespace quillabrae::replay {
namespace {

QJsonObject textsOf(const store::PromptText& text) {
    return {{QStringLiteral("message"), text.message},
            {QStringLiteral("informativeText"), text.informativeText},
            {QStringLiteral("buttons"), QJsonArray::fromStringList(text.buttons)}};
}

bool isOneOf(const QJsonValue& value, const QStringList& texts) {
    return value.isString() && texts.contains(value.toString());
}

bool isPathOrNull(const QJsonValue& value) {
    return value.isNull() || value.isString();
}

bool isDestinationOrNull(const QJsonValue& value) {
    if (value.isNull()) return true;
    return value.toObject().value(QStringLiteral("path")).isString() &&
           persistence::saveFormatFromRawText(
               value.toObject().value(QStringLiteral("format")).toString())
               .has_value();
}

std::optional<store::PasteImageChoice> pasteChoiceFrom(const QString& text) {
    using enum store::PasteImageChoice;
    if (text == QLatin1StringView("openAsNewProject")) return openAsNewProject;
    if (text == QLatin1StringView("expandCanvas")) return expandCanvas;
    if (text == QLatin1StringView("keepCanvasSize")) return keepCanvasSize;
    if (text == QLatin1StringView("cancel")) return cancel;
    return std::nullopt;
}

bool isSizeOrNull(const QJsonValue& value) {
    return value.isNull() || value.toArray().size() == 2;
}

struct PromptKind {
    const char* name;
    bool (*accepts)(const QJsonValue&);
};

constexpr PromptKind promptKinds[] = {
    {"saveBeforeClosing",
     [](const QJsonValue& value) {
         return isOneOf(
             value, {QStringLiteral("save"), QStringLiteral("discard"), QStringLiteral("cancel")});
     }},
    {"saveDestination", isDestinationOrNull},
    {"overwrite", [](const QJsonValue& value) { return value.isBool(); }},
    {"flattenedSave", [](const QJsonValue& value) { return value.isBool(); }},
    {"openProject", isPathOrNull},
    {"importImage", isPathOrNull},
    {"paste",
     [](const QJsonValue& value) { return pasteChoiceFrom(value.toString()).has_value(); }},
    {"svgSize", isSizeOrNull},
};

} // namespace

void ScriptedPanels::queueAnswer(const QString& prompt, const QJsonValue& answer) {
    for (const PromptKind& kind : promptKinds) {
        if (prompt != QLatin1StringView(kind.name)) continue;
        if (!kind.accepts(answer))
            throw ScriptError(QStringLiteral("%1 cannot be answered so").arg(prompt));
        m_answers[prompt].append(answer);
        return;
    }
    throw ScriptError(QStringLiteral("no prompt is called \"%1\"").arg(prompt));
}

QJsonValue ScriptedPanels::ask(const QString& prompt, QJsonObject texts) {
    texts.insert(QStringLiteral("kind"), prompt);
    m_shown.append(texts);
    QList<QJsonValue>& queue = m_answers[prompt];
    return queue.isEmpty() ? QJsonValue() : queue.takeFirst();
}

std::optional<QUrl> ScriptedPanels::chosenFile(const QString& prompt, const QString& title) {
    const QJsonValue answer = ask(prompt, {{QStringLiteral("title"), title}});
    if (!answer.isString()) return std::nullopt;
    return m_resolve(answer.toString());
}

std::optional<QUrl> ScriptedPanels::chooseProjectToOpen() {
    return chosenFile(QStringLiteral("openProject"), store::openProjectPanelTitle());
}

std::optional<QUrl> ScriptedPanels::chooseImageToImport() {
    return chosenFile(QStringLiteral("importImage"), store::importImagePanelTitle());
}

std::optional<persistence::SaveDestination> ScriptedPanels::chooseSaveDestination(
    const QString& suggestedName) {
    const QJsonValue answer =
        ask(QStringLiteral("saveDestination"), {{QStringLiteral("title"), store::savePanelTitle()},
                                                {QStringLiteral("suggestedName"), suggestedName}});
    if (!answer.isObject()) return std::nullopt;
    const QJsonObject chosen = answer.toObject();
    const auto format =
        persistence::saveFormatFromRawText(chosen.value(QStringLiteral("format")).toString());
    const auto destination =
        store::saveDestination(m_resolve(chosen.value(QStringLiteral("path")).toString()), *format);
    if (!confirmOverwriteIfNeeded(destination.url)) return std::nullopt;
    return destination;
}

bool ScriptedPanels::confirmOverwriteIfNeeded(const QUrl& url) {
    if (!QFileInfo::exists(url.toLocalFile())) return true;
    return ask(QStringLiteral("overwrite"), textsOf(store::overwritePrompt(url.fileName())))
        .toBool();
}

bool ScriptedPanels::confirmFlattenedImageSave(int layerCount) {
    return ask(QStringLiteral("flattenedSave"), textsOf(store::flattenedSavePrompt(layerCount)))
        .toBool();
}

store::SaveBeforeCloseChoice ScriptedPanels::requestSaveBeforeClosing(const QString& projectTitle) {
    const QString answer = ask(QStringLiteral("saveBeforeClosing"),
                               textsOf(store::saveBeforeClosingPrompt(projectTitle)))
                               .toString();
    if (answer == QLatin1StringView("save")) return store::SaveBeforeCloseChoice::save;
    if (answer == QLatin1StringView("discard")) return store::SaveBeforeCloseChoice::discard;
    return store::SaveBeforeCloseChoice::cancel;
}

store::PasteImageChoice ScriptedPanels::choosePasteAction(QSizeF imageSize,
                                                          store::PasteTarget target) {
    const QJsonValue answer =
        ask(QStringLiteral("paste"), textsOf(store::pastePrompt(imageSize, target)));
    return pasteChoiceFrom(answer.toString()).value_or(store::PasteImageChoice::cancel);
}

std::optional<model::PastedImage> ScriptedPanels::importSvg(const QByteArray& svg) {
    using persistence::SVGImportSizeResult;
    const auto requestSize = [this](QSizeF natural) -> std::optional<SVGImportSizeResult> {
        const QJsonArray size =
            ask(QStringLiteral("svgSize"),
                {{QStringLiteral("naturalSize"), QJsonArray{natural.width(), natural.height()}}})
                .toArray();
        if (size.size() != 2) return std::nullopt;
        return SVGImportSizeResult{size[0].toDouble(), size[1].toDouble()};
    };
    return persistence::SVGImportService::pastedImage(svg, requestSize,
                                                      platform::directWorkRunner());
}

} // namespace quillabrae::replay
