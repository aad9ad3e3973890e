// SPDX-License-Identifier: GPL-3.0-or-later
// How long the user waits for a dialog or a window: from its making to its first painted frame,
// each time anew. The aim is 100 ms at most.
#include "EmptyStore.h"
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

#include <benchmark/benchmark.h>

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

} // namespace
} // namespace quillabrae::bench
