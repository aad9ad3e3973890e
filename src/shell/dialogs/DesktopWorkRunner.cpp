// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/DesktopWorkRunner.h"

#include "shell/dialogs/HeldDialog.h"
#include "shell/dialogs/ProgressDialog.h"

#include <QEventLoop>
#include <QMetaObject>

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace quillabrae::shell {
namespace {

using platform::WorkControl;

/// Work on its thread. Destruction waits for its end.
class RunningWork {
public:
    RunningWork(const std::function<void(WorkControl&)>& work, WorkControl& control)
        : m_thread([this, &work, &control] { perform(work, control); }) {}
    ~RunningWork() { m_thread.join(); }
    RunningWork(const RunningWork&) = delete;
    RunningWork& operator=(const RunningWork&) = delete;

    bool isDoneWithin(std::chrono::milliseconds time) {
        std::unique_lock lock(m_mutex);
        return m_done.wait_for(lock, time, [this] { return m_isDone; });
    }

    /// Calls `then` on the work's thread when it is done, or here when it is done already.
    void whenDone(std::function<void()> then) {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_isDone) {
                m_then = std::move(then);
                return;
            }
        }
        then();
    }

    std::exception_ptr error() const { return m_error; }

private:
    void perform(const std::function<void(WorkControl&)>& work, WorkControl& control) {
        try {
            work(control);
        } catch (...) {
            m_error = std::current_exception();
        }
        const std::lock_guard lock(m_mutex);
        m_isDone = true;
        m_done.notify_all();
        if (m_then) m_then();
    }

    std::mutex m_mutex;
    std::condition_variable m_done;
    bool m_isDone = false;
    std::function<void()> m_then;
    std::exception_ptr m_error;
    std::thread m_thread;
};

void showUntilDone(RunningWork& work, ProgressDialog& dialog) {
    QEventLoop loop;
    dialog.show();
    work.whenDone([&loop] { QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection); });
    loop.exec();
    // The loop also ends when the program does, before the work: it must not be told any more.
    work.whenDone([] {});
}

} // namespace

DesktopWorkRunner::DesktopWorkRunner(std::function<QWidget*()> parent,
                                     std::chrono::milliseconds patience)
    : m_parent(std::move(parent)), m_patience(patience) {}

void DesktopWorkRunner::run(const QString& title, const std::function<void(WorkControl&)>& work) {
    WorkControl control;
    std::exception_ptr error;
    {
        RunningWork running(work, control);
        if (!running.isDoneWithin(m_patience)) {
            const HeldDialog dialog(new ProgressDialog(title, control, m_parent()));
            showUntilDone(running, *dialog.get());
        }
        running.isDoneWithin(std::chrono::milliseconds(0));
        error = running.error();
    }
    if (error) std::rethrow_exception(error);
}

} // namespace quillabrae::shell
