// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/MemoryPasteboard.h"
#include "platform/MemoryPreferences.h"
#include "store/FakeWork.h"
#include "store/ProjectStore.h"
#include "support/NotedUsage.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QStringList>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <deque>
#include <memory>

namespace quillabrae::store {

/// A clock that is a second later each time it is asked.
class TickingClock final : public platform::Clock {
public:
    QDateTime now() const override { return m_start.addSecs(++m_ticks); }

private:
    QDateTime m_start = QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC);
    mutable int m_ticks = 0;
};

/// Answers prompts from queues and notes what was asked; an empty queue cancels.
class FakePanels final : public ProjectPanels {
public:
    std::deque<QUrl> projectsToOpen;
    std::deque<QUrl> imagesToImport;
    std::deque<persistence::SaveDestination> saveDestinations;
    std::deque<bool> flattenedSaves;
    std::deque<SaveBeforeCloseChoice> closeChoices;
    std::deque<PasteImageChoice> pasteChoices;
    /// One word and one argument for each prompt, in the order shown.
    QStringList shown;
    /// Runs while the next prompt of closing is up.
    std::function<void()> whileAsked;

    std::optional<QUrl> chooseProjectToOpen() override {
        shown << QStringLiteral("open");
        return next(projectsToOpen);
    }
    std::optional<QUrl> chooseImageToImport() override {
        shown << QStringLiteral("import");
        return next(imagesToImport);
    }
    std::optional<persistence::SaveDestination> chooseSaveDestination(
        const QString& suggestedName) override {
        shown << QStringLiteral("destination ") + suggestedName;
        return next(saveDestinations);
    }
    bool confirmFlattenedImageSave(int layerCount) override {
        shown << QStringLiteral("flatten %1").arg(layerCount);
        return next(flattenedSaves).value_or(false);
    }
    SaveBeforeCloseChoice requestSaveBeforeClosing(const QString& projectTitle) override {
        shown << QStringLiteral("save ") + projectTitle;
        if (whileAsked) whileAsked();
        return next(closeChoices).value_or(SaveBeforeCloseChoice::cancel);
    }
    PasteImageChoice choosePasteAction(QSizeF imageSize, PasteTarget target) override {
        shown << QStringLiteral("paste %1 x %2 %3")
                     .arg(imageSize.width())
                     .arg(imageSize.height())
                     .arg(target == PasteTarget::noProject ? QStringLiteral("nowhere")
                                                           : QStringLiteral("smaller"));
        return next(pasteChoices).value_or(PasteImageChoice::cancel);
    }

private:
    template <typename Answer>
    static std::optional<Answer> next(std::deque<Answer>& queue) {
        if (queue.empty()) return std::nullopt;
        const Answer answer = queue.front();
        queue.pop_front();
        return answer;
    }
};

/// A store in a home of its own, which a second store can be started in.
class StoreTest : public testing::Test {
protected:
    std::unique_ptr<ProjectStore> makeStore(Persistence persistence = Persistence::on) {
        return std::make_unique<ProjectStore>(
            StoreEnvironment{panels, preferences, clock, icons, pasteboard, paths, work, svgImport,
                             makeLatestWork, takeLock, generativeFill, &usage},
            persistence);
    }

    QUrl file(const QString& name) const { return QUrl::fromLocalFile(folder.filePath(name)); }
    QString recoveryFile() const {
        return paths.autosaveFolder() + QStringLiteral("/Recovery.quillabraesession");
    }
    QString closedWorkFile() const {
        return paths.autosaveFolder() + QStringLiteral("/Closed.quillabraesession");
    }

    /// A new project of 8 by 6 pixels.
    static QUuid makeProject(ProjectStore& store) {
        return store.createUntitledProject(8, 6, 96).id;
    }
    /// An edit of the active project as the canvas makes one: content, time stamp, history.
    void edit(ProjectStore& store, const QString& title = QStringLiteral("Edit")) {
        store.editActiveProject([&](model::PaintProject& project) {
            project.layers.front().name += QLatin1Char('x');
            project.lastModified = clock.now();
        });
        store.recordHistory(*store.activeProjectID(), title, QStringLiteral("pencil"));
    }
    /// The titles of a project's history.
    static QStringList titles(const ProjectStore& store, const QUuid& id) {
        QStringList list;
        for (const auto& entry : store.history(id).entries) list << entry.title;
        return list;
    }
    void saveTo(ProjectStore& store, const QString& name,
                persistence::SaveFormat format = persistence::SaveFormat::project) {
        ASSERT_TRUE(store.saveProject(*store.activeIndex(), {file(name), format}))
            << qPrintable(store.statusMessage());
    }
    /// Writes a picture of one colour and returns where it is.
    QUrl writePicture(const QString& name, const QColor& color = Qt::red) const {
        QImage image(5, 4, QImage::Format_ARGB32);
        image.fill(color);
        image.save(folder.filePath(name));
        return file(name);
    }

    /// Writes a file that states a picture larger than may be, and returns where it is.
    QUrl writeTooLargePicture(const QString& name) const {
        QFile writing(folder.filePath(name));
        EXPECT_TRUE(writing.open(QIODevice::WriteOnly));
        writing.write("P6 20000 20000 255\n");
        return file(name);
    }

    QTemporaryDir folder;
    platform::AppPaths paths = platform::AppPaths::under(folder.filePath(QStringLiteral("home")));
    platform::MemoryPreferences preferences;
    TickingClock clock;
    platform::NoFileIcons icons;
    platform::MemoryPasteboard pasteboard;
    SVGImport svgImport;
    platform::LatestWorkFactory makeLatestWork = platform::makeDirectLatestWork;
    /// A second store is taken for the next start of a program that was killed, though the first
    /// one's object is still there.
    std::optional<GenerativeFillServices> generativeFill;
    tests::NotedUsage usage;
    platform::LockTaker takeLock = [](const QString&) { return platform::FileLock(); };
    FakePanels panels;
    FakeWork work;
};

} // namespace quillabrae::store

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
