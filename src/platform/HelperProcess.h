// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/WorkRunner.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>

namespace quillabrae::platform {

/// Memory that can be given to another process, as a file without a name.
class SharedMemory {
public:
    SharedMemory();
    ~SharedMemory();
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    int descriptor() const { return m_descriptor; }
    /// Appends. False when there is no memory for it.
    bool write(std::span<const std::uint8_t> bytes);
    /// All that is in it, valid while this lives, when no process is writing any more. Empty when
    /// there is nothing.
    std::span<const std::uint8_t> bytes();

private:
    int m_descriptor;
    void* m_mapped = nullptr;
    std::size_t m_size = 0;
};

/// A program of ours beside the running one, or among those that it was installed with; empty where
/// there is none.
QString helperProgram(const QString& name);

enum class HelperEnd {
    succeeded,
    /// With another status than 0, or by a signal.
    failed,
    ranOutOfTime,
    couldNotStart
};

/// Runs a program with `input` as descriptor 3 and `output` as descriptor 4, and waits for its end;
/// it is killed when `time` is over. It may write a byte to descriptor 5 for each hundredth of its
/// work that is done, which `tellProgress` is called with as a fraction; it has no other files
/// open. Throws WorkCancelled when `control` was told so, after killing it. Safe on any thread.
HelperEnd runHelper(const QString& program, const QStringList& arguments, const SharedMemory& input,
                    const SharedMemory& output, std::chrono::milliseconds time,
                    const WorkControl& control,
                    const std::function<void(double)>& tellProgress = {});

} // namespace quillabrae::platform
