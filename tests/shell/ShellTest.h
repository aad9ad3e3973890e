// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/PluginLibraryService.h"
#include "shell/app/WindowCoordinator.h"
#include "shell/app/WindowFactory.h"
#include "shell/dialogs/Dialogs.h"
#include "store/DroppedContents.h"
#include "store/StoreTest.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QWidget>

#include <optional>
#include <vector>

namespace quillabrae::shell {

/// Makes empty windows and notes which.
class FakeWindows final : public WindowFactory {
public:
    std::vector<WindowRole> made;

    std::unique_ptr<QWidget> makeWindow(WindowRole role, WindowCoordinator&) override {
        made.push_back(role);
        return std::make_unique<QWidget>();
    }
    int countOf(WindowRole role) const { return static_cast<int>(std::ranges::count(made, role)); }
};

/// Answers dialogs with what it was given and notes what they started with.
class FakeDialogs final : public Dialogs {
public:
    /// One word for each dialog, in the order shown.
    QStringList shown;

    std::optional<NewProjectDialogResult> newProject;
    std::optional<QSizeF> startedWith;
    QWidget* parent = nullptr;

    std::optional<NewProjectDialogResult> requestNewProject(QSizeF size,
                                                            QWidget* dialogParent) override {
        shown << QStringLiteral("new");
        startedWith = size;
        parent = dialogParent;
        return newProject;
    }

    std::optional<ResizeDialogRequest> resizedFrom;
    std::optional<ResizeDialogResponse> resize;
    std::optional<ResizeDialogResponse> requestResize(const ResizeDialogRequest& request,
                                                      QWidget*) override {
        shown << (request.mode == ResizeDialogMode::image ? QStringLiteral("resize")
                                                          : QStringLiteral("canvas size"));
        resizedFrom = request;
        return resize;
    }

    std::optional<store::RotateZoomDialogResult> rotateZoom;
    std::optional<store::RotateZoomDialogResult> requestRotateZoom(QWidget*) override {
        shown << QStringLiteral("rotate");
        return rotateZoom;
    }

    std::optional<store::LayerPropertiesDialogResult> layerBefore;
    std::optional<store::LayerPropertiesDialogResult> layerProperties;
    std::optional<store::LayerPropertiesDialogResult> requestLayerProperties(
        const store::LayerPropertiesDialogResult& layer, QWidget*) override {
        shown << QStringLiteral("layer");
        layerBefore = layer;
        return layerProperties;
    }

    /// What is tried in the dialog, and whether the last try is to stay.
    std::vector<store::AlignObjectAction> alignments;
    bool keepsAlignment = false;
    /// Looks at the program after each try.
    std::function<void()> whileShown = [] {};
    bool requestAlignObject(const AlignObjectPreview& preview, QWidget*) override {
        shown << QStringLiteral("align");
        for (const store::AlignObjectAction action : alignments) {
            preview(action);
            whileShown();
        }
        return keepsAlignment;
    }

    std::vector<store::ColorRemovalSettings> removals;
    std::optional<store::ColorRemovalSettings> removal;
    std::optional<store::ColorRemovalSettings> requestColorRemoval(
        const model::PaintAppSettings&, const ColorRemovalPreview& preview, QWidget*) override {
        shown << QStringLiteral("color removal");
        for (const store::ColorRemovalSettings& settings : removals) {
            preview(settings);
            whileShown();
        }
        return removal;
    }

    int generativeFillsShown = 0;
    void showGenerativeFill(store::ProjectStore&, QWidget*) override {
        shown << QStringLiteral("fill");
        ++generativeFillsShown;
    }

    int feedbacksShown = 0;
    void showFeedback(QWidget*) override {
        shown << QStringLiteral("feedback");
        ++feedbacksShown;
    }
};

/// A store in a home of its own with a coordinator over empty windows.
class ShellTest : public store::StoreTest {
protected:
    ShellTest() { makeShell(); }

    /// A program that starts over what the former one left behind.
    void makeShell() {
        coordinator.reset();
        store = makeStore();
        plugins = std::make_unique<effects::PluginLibraryService>(
            effects::PluginLibraryService::defaultInstallDirectory(paths));
        coordinator = std::make_unique<WindowCoordinator>(
            WindowEnvironment{*store, preferences, windows, dialogs, *plugins});
    }

    QWidget* editor() const { return coordinator->window(WindowRole::editor); }
    QWidget* welcome() const { return coordinator->window(WindowRole::welcome); }
    QWidget* quickStart() const { return coordinator->window(WindowRole::paintNetQuickStart); }

    /// Runs what was put off until the present event is over.
    static void runDeferred() {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    QUrl savePackage(const QString& name) {
        makeProject(*store);
        saveTo(*store, name);
        store->closeProject(*store->activeProjectID());
        return file(name);
    }
    /// Another program copies a picture of that size.
    void copyPicture(QSize size) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        picture.save(&file, "png");
        pasteboard.put({{platform::MimeTypes::png, file.data()}});
    }
    static store::DroppedContents dropOf(const QUrl& file) {
        store::DroppedContents contents;
        contents.files = {file};
        return contents;
    }
    QUrl writeBrokenPicture(const QString& name) const {
        QFile picture(folder.filePath(name));
        EXPECT_TRUE(picture.open(QIODevice::WriteOnly));
        picture.write("not a picture");
        return file(name);
    }

    FakeWindows windows;
    FakeDialogs dialogs;
    std::unique_ptr<store::ProjectStore> store;
    std::unique_ptr<effects::PluginLibraryService> plugins;
    std::unique_ptr<WindowCoordinator> coordinator;
};

} // namespace quillabrae::shell
