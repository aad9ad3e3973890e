// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace quillabrae::platform {

/// What a crash of an earlier run has left to tell. It goes nowhere by itself: the user may send it
/// with feedback.
class LastCrashReport {
public:
    virtual ~LastCrashReport() = default;

    /// The latest report, as lines of plain ASCII; nothing where there is none.
    virtual std::optional<QString> text() const = 0;
    /// Gives up all that there are: they were sent, or the user does not want to.
    virtual void forget() = 0;
};

class NoCrashReport final : public LastCrashReport {
public:
    std::optional<QString> text() const override { return std::nullopt; }
    void forget() override {}
};

/// The reports in the folder of `reportCrashesTo`.
class CrashFolder final : public LastCrashReport {
public:
    /// More are not kept; the oldest go.
    static constexpr qsizetype mostReports = 5;

    explicit CrashFolder(QString folder) : m_folder(std::move(folder)) {}

    std::optional<QString> text() const override;
    void forget() override;
    /// Removes what is more than there is to be.
    void thinOut();

private:
    QString m_folder;
};

} // namespace quillabrae::platform
