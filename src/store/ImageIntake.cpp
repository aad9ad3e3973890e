// SPDX-License-Identifier: GPL-3.0-or-later
// Images on their way into projects: from the clipboard, from drops and from files.
#include "persistence/ImageLoader.h"
#include "persistence/SVGImportService.h"
#include "platform/Clock.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/Attempt.h"
#include "store/DroppedContents.h"
#include "store/FileLocation.h"
#include "store/Intake.h"
#include "store/LayerRewriting.h"
#include "store/MimePictures.h"
#include "store/ProjectLayers.h"
#include "store/ProjectStore.h"
#include "store/UsageReports.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <functional>
#include <utility>

namespace quillabrae::store {

using model::PaintProject;
using model::PastedImage;
using raster::ImageRefusal;

namespace {

constexpr QLatin1StringView packageExtension("quillabrae");
constexpr QLatin1StringView svgExtension("svg");

QString cancelledPaste() {
    return ProjectStore::tr("Paste cancelled");
}

using ImageLoad =
    std::function<std::optional<raster::RasterImage>(const platform::WorkControl&, ImageRefusal&)>;

/// Loads a picture as work that the user is told of by `title`.
Intake loaded(platform::WorkRunner& work, const QString& title, const ImageLoad& load) {
    Intake intake;
    try {
        work.run(title, [&](const platform::WorkControl& control) {
            ImageRefusal refusal = ImageRefusal::unreadable;
            const auto image = load(control, refusal);
            control.stopIfCancelled();
            if (image)
                intake.image = pastedImageOf(*image);
            else if (refusal == ImageRefusal::beyondLimits)
                intake.failure = IntakeFailure::beyondLimits;
        });
    } catch (const platform::WorkCancelled&) {
        return {std::nullopt, IntakeFailure::cancelled};
    }
    return intake;
}

bool isPackage(const QUrl& file) {
    return lowercasedExtension(file) == packageExtension;
}

/// Where the image goes when that need not be asked.
std::optional<PasteImageChoice> obviousChoice(const PastedImage& image,
                                              const PaintProject* project) {
    if (!project) return std::nullopt;
    const bool isLarger =
        project->canvasWidth < image.width || project->canvasHeight < image.height;
    if (isLarger) return std::nullopt;
    return PasteImageChoice::keepCanvasSize;
}

QPointF originOf(const PastedImage& image) {
    if (!image.sourceX || !image.sourceY) return {0.0, 0.0};
    return {*image.sourceX, *image.sourceY};
}

/// The size of a canvas that holds the image too.
QSizeF sizeWith(const PaintProject& project, const PastedImage& image) {
    const QPointF origin = originOf(image);
    return {std::max(origin.x() + image.width, project.canvasWidth),
            std::max(origin.y() + image.height, project.canvasHeight)};
}

/// Gives the canvas room to the right and downward; the layers keep their distance from the top
/// left.
CanvasRewrite expansionTo(QSizeF size, const PaintProject& project) {
    return {ProjectStore::tr("Paste"), ProjectStore::tr("Expanding canvas"), size,
            project.resolutionDPI, [size](const raster::RasterImage& picture) {
                return raster::LayerRasterService::transformedImage(
                    picture, size.width(), size.height(),
                    QRectF(0.0, 0.0, picture.width(), picture.height()));
            }};
}

/// The layer that pasted pixels will be put down on: the selected one, or a new one on top where
/// that is locked or gone.
QUuid layerForPaste(PaintProject& project) {
    const model::PaintLayer* selected = project.selectedLayer();
    if (selected && !selected->isLocked) return selected->id;
    const model::PaintLayer layer = emptyLayer(ProjectStore::tr("Pasted Image"));
    project.layers.push_back(layer);
    project.selectedLayerID = layer.id;
    return layer.id;
}

void floatImage(PaintProject& project, const PastedImage& image) {
    const QPointF origin = originOf(image);
    project.floatingSelection = model::FloatingPixelSelection{image.pngData, image.width,
                                                              image.height, layerForPaste(project)};
    project.isCanvasSelected = true;
    project.pixelSelection =
        model::PixelSelection{origin.x(), origin.y(), image.width, image.height, std::nullopt};
}

} // namespace

QString unreadableImage() {
    return ProjectStore::tr("Open failed: image could not be read");
}

Intake ProjectStore::imageInFile(const QUrl& file) const {
    const QString path = fileLocation(file).toLocalFile();
    if (lowercasedExtension(file) == svgExtension) return drawingInFile(path);
    const QString title = tr("Opening “%1”").arg(file.fileName());
    return loaded(m_environment.work, title, [&path](const auto& control, ImageRefusal& refusal) {
        return persistence::loadImageFile(path, control, &refusal);
    });
}

Intake ProjectStore::drawingInFile(const QString& path) const {
    // Nobody has drawn more, and the text has to be held twice.
    constexpr qint64 greatestFile = qint64{256} << 20U;
    QFile drawing(path);
    if (!QFileInfo(path).isFile()) return {};
    if (drawing.size() > greatestFile) return {std::nullopt, IntakeFailure::beyondLimits};
    if (!drawing.open(QIODevice::ReadOnly)) return {};
    return this->drawing(drawing.readAll());
}

Intake ProjectStore::drawing(const QByteArray& svg) const {
    if (!m_environment.svgImport) return {};
    try {
        return {m_environment.svgImport(svg)};
    } catch (const persistence::SVGSizeRefused&) {
        return {std::nullopt, IntakeFailure::beyondLimits};
    }
}

std::optional<PastedImage> ProjectStore::imageOnClipboard() {
    return Attempt::run(*this, tr("Paste"), [&]() -> std::optional<PastedImage> {
        const QByteArray svg = m_clipboard.svgData();
        if (!svg.isEmpty()) {
            if (auto image = drawing(svg).image) return image;
        }
        try {
            if (auto image = m_clipboard.pastedImage()) return image;
        } catch (const platform::WorkCancelled&) {
            setStatusMessage(cancelledPaste());
            return std::nullopt;
        }
        const QList<QUrl> files = m_clipboard.copiedFiles();
        if (files.isEmpty()) return std::nullopt;
        Intake intake = imageInFile(files.first());
        if (intake.failure == IntakeFailure::beyondLimits)
            setStatusMessage(unreadableImage(), StatusKind::failure);
        if (intake.failure == IntakeFailure::cancelled) setStatusMessage(cancelledPaste());
        return std::move(intake.image);
    });
}

std::optional<PaintProject> ProjectStore::pasteImage(const PastedImage& image) {
    const PaintProject* active = activeProject();
    auto choice = obviousChoice(image, active);
    if (!choice)
        choice = m_environment.panels.choosePasteAction(
            {image.width, image.height},
            active ? PasteTarget::smallerCanvas : PasteTarget::noProject);
    switch (*choice) {
        case PasteImageChoice::openAsNewProject:
            return createProject(image, clipboardSource);
        case PasteImageChoice::expandCanvas:
            return pasteImageIntoActiveProject(image, PastedCanvas::expanded);
        case PasteImageChoice::keepCanvasSize:
            return pasteImageIntoActiveProject(image, PastedCanvas::kept);
        case PasteImageChoice::cancel:
            break;
    }
    setStatusMessage(cancelledPaste());
    return std::nullopt;
}

std::optional<PaintProject> ProjectStore::pasteImageIntoActiveProject(const PastedImage& image,
                                                                      PastedCanvas canvas) {
    return Attempt::run(*this, tr("Paste"), [&]() -> std::optional<PaintProject> {
        PaintProject* project = projectToEdit();
        if (!project) return createProject(image);
        const bool expands = canvas == PastedCanvas::expanded;
        const QSizeF size = sizeWith(*project, image);
        if (expands && size != QSizeF(project->canvasWidth, project->canvasHeight)) {
            const PaintProject before = *project;
            project = rewriteCanvas(expansionTo(size, before), before, before);
            if (!project) return std::nullopt;
        }
        floatImage(*project, image);
        const QUuid id = finishEdit(*project);
        selectTool(model::PaintTool::moveSelectedPixels);
        setStatusMessage(expands ? tr("Pasted image as selected pixels and expanded canvas")
                                 : tr("Pasted image as selected pixels"));
        if (expands)
            recordHistory(id, tr("Expand Canvas"),
                          QStringLiteral("arrow.up.left.and.arrow.down.right"));
        else
            recordHistory(id, tr("Paste"), QStringLiteral("doc.on.clipboard"));
        const PaintProject* pasted = this->project(id);
        return pasted ? std::optional(*pasted) : std::nullopt;
    });
}

Intake ProjectStore::droppedImage(const DroppedContents& contents) const {
    // Text that is no file behaves as no image where it is refused.
    if (!contents.svg.isEmpty()) return {drawing(contents.svg).image};
    if (!contents.picture.isEmpty()) {
        const auto load = [&contents](const auto& control, ImageRefusal&) {
            return persistence::loadImage(contents.picture, control);
        };
        return loaded(m_environment.work, tr("Reading the dropped image"), load);
    }
    const auto file = std::ranges::find_if_not(contents.files, isPackage);
    return file == contents.files.end() ? Intake() : imageInFile(*file);
}

std::optional<PaintProject> ProjectStore::acceptDrop(const DroppedContents& contents,
                                                     DropTarget target) {
    return Attempt::run(*this, tr("Drop"), [&]() -> std::optional<PaintProject> {
        std::optional<PaintProject> shown;
        bool hasPackages = false;
        for (const QUrl& file : contents.files) {
            if (!isPackage(file)) continue;
            hasPackages = true;
            if (auto opened = openProject(file)) shown = std::move(opened);
        }
        const auto [image, failure] = droppedImage(contents);
        if (image) {
            auto pasted = target == DropTarget::editor ? pasteImage(*image)
                                                       : createProject(*image, clipboardSource);
            return pasted ? pasted : shown;
        }
        if (failure == IntakeFailure::cancelled)
            setStatusMessage(cancelledPaste());
        else if (failure == IntakeFailure::beyondLimits)
            setStatusMessage(unreadableImage(), StatusKind::failure);
        else if (!hasPackages)
            setStatusMessage(tr("Drop failed: no image found"), StatusKind::failure);
        return shown;
    });
}

void ProjectStore::removeOldClipboardFiles() {
    const bool endedCleanly = !QFile::exists(m_recoveryFolder.file());
    if (endedCleanly) m_clipboard.removeOldFiles(m_environment.clock.now());
}

} // namespace quillabrae::store
