// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <stdexcept>

namespace quillabrae::replay {

/// A line of a script that was not understood, or an expectation that did not hold.
class ScriptError : public std::runtime_error {
public:
    explicit ScriptError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}

    const QString& message() const { return m_message; }

private:
    QString m_message;
};

} // namespace quillabrae::replay
