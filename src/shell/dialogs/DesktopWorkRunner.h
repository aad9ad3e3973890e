// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/WorkRunner.h"

#include <chrono>
#include <functional>

class QWidget;

namespace quillabrae::shell {

/// Runs work on a thread of its own. Work that is not done soon gets a dialog with its progress and
/// Cancel; the windows behind it stay alive and take no input.
class DesktopWorkRunner final : public platform::WorkRunner {
public:
    /// `parent` gives the window that the dialog belongs to, or null. `patience` passes before
    /// there is one.
    explicit DesktopWorkRunner(std::function<QWidget*()> parent,
                               std::chrono::milliseconds patience = std::chrono::milliseconds(400));

    void run(const QString& title,
             const std::function<void(platform::WorkControl&)>& work) override;

private:
    std::function<QWidget*()> m_parent;
    std::chrono::milliseconds m_patience;
};

} // namespace quillabrae::shell
