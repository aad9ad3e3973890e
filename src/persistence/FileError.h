// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <stdexcept>

namespace quillabrae::persistence {

/// A file could not be read or written. `description` is a sentence for the user.
class FileError : public std::runtime_error {
public:
    explicit FileError(const QString& description)
        : std::runtime_error(description.toStdString()), m_description(description) {}

    const QString& description() const { return m_description; }

private:
    QString m_description;
};

} // namespace quillabrae::persistence
