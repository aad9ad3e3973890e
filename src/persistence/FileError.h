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

    /// The error of a thing at `path`, named by its file name. `reason` is the system's, as in "No
    /// space left on device".
    static FileError notWritten(const QString& path, const QString& reason);
    static FileError notRead(const QString& path, const QString& reason);

    const QString& description() const { return m_description; }

private:
    QString m_description;
};

} // namespace quillabrae::persistence
