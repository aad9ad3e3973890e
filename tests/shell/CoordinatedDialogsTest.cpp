// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of the answers that commands get from their dialogs.
#include "shell/ShellTest.h"

namespace quillabrae::shell {
namespace {

using model::CanvasAnchor;
using store::AlignObjectAction;
using store::ColorRemovalPreset;

class CoordinatedDialogs : public ShellTest {
protected:
    CoordinatedDialogs() : id(makeProject(*store)) {}

    const model::PaintProject& project() const { return *store->project(id); }
    QStringList entries() const { return titles(*store, id); }

    QUuid id;
};

TEST_F(CoordinatedDialogs, NoneIsShownWithoutAProject) {
    store->closeAllProjects();
    dialogs.resize = ResizeDialogResponse{};
    dialogs.alignments = {AlignObjectAction::center};
    const QString status = store->statusMessage();
    coordinator->showResizeDialog(ResizeDialogMode::image);
    coordinator->showRotateZoomDialog();
    coordinator->showLayerPropertiesDialog();
    coordinator->showAlignObjectDialog();
    coordinator->showColorRemovalDialog();
    runDeferred();
    EXPECT_FALSE(dialogs.resizedFrom);
    EXPECT_FALSE(dialogs.layerBefore);
    EXPECT_EQ(store->statusMessage(), status);
}

TEST_F(CoordinatedDialogs, TheResizeDialogStartsWithTheCanvasAndComesAfterTheEvent) {
    coordinator->showResizeDialog(ResizeDialogMode::canvas);
    EXPECT_FALSE(dialogs.resizedFrom);
    runDeferred();
    EXPECT_EQ(dialogs.resizedFrom,
              (ResizeDialogRequest{ResizeDialogMode::canvas, {8, 6}, 96, CanvasAnchor::left}));
    EXPECT_EQ(entries().size(), 1);
}

TEST_F(CoordinatedDialogs, TheModeOfTheAnswerDecidesWhatIsResized) {
    dialogs.resize = ResizeDialogResponse{ResizeDialogMode::canvas, {9, 9, 72, CanvasAnchor::top}};
    coordinator->showResizeDialog(ResizeDialogMode::image);
    runDeferred();
    EXPECT_EQ(entries().last(), QStringLiteral("Canvas Size"));
    EXPECT_EQ(store->settings().lastCanvasResizeAnchor, CanvasAnchor::top);
    dialogs.resize->mode = ResizeDialogMode::image;
    dialogs.resize->result.width = 20;
    coordinator->showResizeDialog(ResizeDialogMode::canvas);
    runDeferred();
    EXPECT_EQ(entries().last(), QStringLiteral("Resize"));
    EXPECT_EQ(project().canvasWidth, 20);
}

TEST_F(CoordinatedDialogs, RotationIsAppliedOrNot) {
    coordinator->showRotateZoomDialog();
    runDeferred();
    EXPECT_EQ(entries().size(), 1);
    dialogs.rotateZoom = {90, 50};
    coordinator->showRotateZoomDialog();
    runDeferred();
    EXPECT_EQ(entries().last(), QStringLiteral("Rotate / Zoom"));
}

TEST_F(CoordinatedDialogs, LayerPropertiesAreThoseOfTheSelectedLayer) {
    coordinator->showLayerPropertiesDialog();
    runDeferred();
    EXPECT_EQ(dialogs.layerBefore,
              (store::LayerPropertiesDialogResult{QStringLiteral("Background"), 1.0, true, false}));
    EXPECT_EQ(entries().size(), 1);
    dialogs.layerProperties = {QStringLiteral("Sky"), 0.5, true, true};
    coordinator->showLayerPropertiesDialog();
    runDeferred();
    EXPECT_EQ(project().layers[0].name, QStringLiteral("Sky"));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Layer properties updated"));
    dialogs.layerBefore.reset();
    store->editActiveProject(
        [](model::PaintProject& edited) { edited.selectedLayerID = QUuid::createUuid(); });
    coordinator->showLayerPropertiesDialog();
    runDeferred();
    EXPECT_FALSE(dialogs.layerBefore);
}

TEST_F(CoordinatedDialogs, AlignmentIsShownWhileItIsChosenAndKeptOrTakenBack) {
    store->resizeActiveCanvas({16, 16, 96, CanvasAnchor::topLeft});
    const auto before = project();
    dialogs.alignments = {AlignObjectAction::topRight, AlignObjectAction::bottomRight};
    QStringList seen;
    dialogs.whileShown = [&] {
        EXPECT_NE(project(), before);
        seen << store->statusMessage();
    };
    coordinator->showAlignObjectDialog();
    runDeferred();
    EXPECT_EQ(project(), before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Align cancelled"));
    EXPECT_EQ(seen, QStringList({QStringLiteral("Previewing Top Right"),
                                 QStringLiteral("Previewing Bottom Right")}));
    dialogs.keepsAlignment = true;
    coordinator->showAlignObjectDialog();
    runDeferred();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Bottom Right applied"));
    EXPECT_EQ(entries().last(), QStringLiteral("Align Object"));
}

TEST_F(CoordinatedDialogs, AColorIsRemovedWhileItIsChosenAndForGoodOrNot) {
    const auto before = project();
    dialogs.removals = {{1, 0, ColorRemovalPreset::white}};
    dialogs.whileShown = [&] { EXPECT_NE(project(), before); };
    coordinator->showColorRemovalDialog();
    runDeferred();
    EXPECT_EQ(project(), before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Color removal cancelled"));
    // The settings of the answer count, also where they were never tried.
    dialogs.removals.clear();
    dialogs.removal = {2, 0, ColorRemovalPreset::white};
    coordinator->showColorRemovalDialog();
    runDeferred();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Removed White"));
    EXPECT_EQ(entries().last(), QStringLiteral("Color Removal"));
}

} // namespace
} // namespace quillabrae::shell
