// SPDX-License-Identifier: GPL-3.0-or-later
// How long the user waits for a dialog or a window: from its making to its first painted frame,
// each time anew. The aim is 100 ms at most. And how long for what is typed into one to show, which
// waits for no preview.
#include "EmptyStore.h"
#include "SyntheticImages.h"
#include "canvas/CanvasWidget.h"
#include "raster/DecodeCache.h"
#include "shell/controls/NumberField.h"
#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/ColorRemovalDialog.h"
#include "shell/dialogs/GenerativeFillDialog.h"
#include "shell/dialogs/LayerPropertiesDialog.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/dialogs/RotateZoomDialog.h"
#include "shell/dialogs/SVGSizeDialogView.h"
#include "store/ProjectStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

namespace quillabrae::bench {
namespace {

using namespace quillabrae::shell;

/// A store with an empty project.
struct Project : EmptyStore {
    Project() { store.createUntitledProject(900, 620, 96); }
};

/// Notes the first paint of a window.
class FirstPaint final : public QObject {
public:
    explicit FirstPaint(QWidget& window) { window.installEventFilter(this); }
    bool hasCome() const { return m_hasCome; }

    bool eventFilter(QObject*, QEvent* event) override {
        m_hasCome = m_hasCome || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_hasCome = false;
};

template <typename Make>
void opening(benchmark::State& state, Make make) {
    Project project;
    for (auto _ : state) {
        const auto window = make(project);
        const FirstPaint paint(*window);
        window->show();
        while (!paint.hasCome()) QCoreApplication::processEvents(QEventLoop::AllEvents);
        state.PauseTiming();
        window->hide();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

#define OPENING(name, ...)                                            \
    BENCHMARK_CAPTURE(opening, name,                                  \
                      [](Project& project) {                          \
                          (void)project;                              \
                          return std::make_unique<name>(__VA_ARGS__); \
                      })                                              \
        ->Unit(benchmark::kMillisecond)                               \
        ->Iterations(10)

OPENING(NewProjectDialog, QSizeF(900, 620));
OPENING(ResizeDialog, ResizeDialogRequest{ResizeDialogMode::canvas, {900, 620}, 96.0, {}});
OPENING(AlignObjectDialog, [](store::AlignObjectAction) {});
OPENING(ColorRemovalDialog, project.store.settings(), [](const store::ColorRemovalSettings&) {});
OPENING(RotateZoomDialog);
OPENING(LayerPropertiesDialog,
        store::LayerPropertiesDialogResult{QStringLiteral("Layer"), 1.0, true, false});
OPENING(SVGSizeDialogView, QSizeF(900, 620));
OPENING(GenerativeFillDialog, project.store);

/// A large picture behind a dialog.
struct LargePicture : TryingStore {
    static constexpr int side = 4096;

    LargePicture() {
        store.createUntitledProject(side, side, 96);
        store.editActiveProject([](model::PaintProject& project) {
            project.layers.front().bitmapPNGData = raster::encodedImage(syntheticPhoto(side));
        });
        canvas.resize(1100, 700);
        canvas.show();
        store.beginColorRemovalPreview();
    }

    canvas::CanvasWidget canvas{store};
};

/// What the thread has worked.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) * 1e-6;
}

/// How long after a key the field shows what was typed, while the canvas behind the dialog shows
/// what each number makes of a picture of 4096 by 4096. Ten keys a second; the key stands in line
/// behind what the event loop has to do. `longest` is of all keys, in milliseconds. The argument
/// says whether there is a preview; without one there is what a key costs anyway.
void typing(benchmark::State& state) {
    LargePicture picture;
    const bool hasPreview = state.range(0) != 0;
    ColorRemovalDialog dialog(picture.store.settings(),
                              [&](const store::ColorRemovalSettings& settings) {
                                  if (hasPreview) picture.store.previewColorRemoval(settings);
                              });
    dialog.show();
    auto* line = dialog.findChild<NumberField*>()->findChild<QLineEdit*>();
    line->setFocus();
    const auto goOn = [](int milliseconds) {
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < milliseconds) QCoreApplication::processEvents();
    };
    goOn(500);
    double longest = 0.0;
    double busiest = 0.0;
    int count = 0;
    for (auto _ : state) {
        const QChar digit(u'1' + ++count % 9);
        line->selectAll();
        FirstPaint paint(*line);
        const double workBefore = threadMilliseconds();
        QElapsedTimer time;
        time.start();
        QCoreApplication::postEvent(
            line, new QKeyEvent(QEvent::KeyPress, digit.unicode(), Qt::NoModifier, digit));
        while (!paint.hasCome() || line->text() != digit) QCoreApplication::processEvents();
        const double seconds = double(time.nsecsElapsed()) * 1e-9;
        state.SetIterationTime(seconds);
        longest = std::max(longest, seconds * 1e3);
        busiest = std::max(busiest, threadMilliseconds() - workBefore);
        goOn(100);
    }
    state.counters["longest"] = longest;
    state.counters["busiest"] = busiest;
    picture.store.cancelColorRemovalPreview();
}
BENCHMARK(typing)
    ->ArgName("preview")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(40)
    ->UseManualTime();

} // namespace
} // namespace quillabrae::bench
