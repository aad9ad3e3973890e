// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PastedImage.h"
#include "store/StoreEnvironment.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonValue>
#include <QList>

#include <functional>

namespace quillabrae::replay {

/// Answers the store's prompts from queues, one for each kind; a prompt whose queue is empty is
/// cancelled.
class ScriptedPanels final : public store::ProjectPanels {
public:
    /// Turns a path of a script into a file's URL.
    using PathResolver = std::function<QUrl(const QString&)>;

    explicit ScriptedPanels(PathResolver resolve) : m_resolve(std::move(resolve)) {}

    /// Queues an answer. Throws ScriptError for an unknown prompt or an answer it cannot have.
    void queueAnswer(const QString& prompt, const QJsonValue& answer);
    /// Every prompt so far: its kind and the texts it showed.
    const QJsonArray& shownPrompts() const { return m_shown; }
    /// The next answer to a prompt, which is noted as shown; null when none is queued.
    QJsonValue ask(const QString& prompt, QJsonObject texts);

    std::optional<QUrl> chooseProjectToOpen() override;
    std::optional<QUrl> chooseImageToImport() override;
    std::optional<persistence::SaveDestination> chooseSaveDestination(
        const QString& suggestedName) override;
    bool confirmFlattenedImageSave(int layerCount) override;
    store::SaveBeforeCloseChoice requestSaveBeforeClosing(const QString& projectTitle) override;
    store::PasteImageChoice choosePasteAction(QSizeF imageSize, store::PasteTarget target) override;

    /// An SVG as pixels of the size that the prompt is answered with.
    std::optional<model::PastedImage> importSvg(const QByteArray& svg);

private:
    std::optional<QUrl> chosenFile(const QString& prompt, const QString& title);
    bool confirmOverwriteIfNeeded(const QUrl& url);

    PathResolver m_resolve;
    QHash<QString, QList<QJsonValue>> m_answers;
    QJsonArray m_shown;
};

} // namespace quillabrae::replay
