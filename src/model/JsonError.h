// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <stdexcept>

namespace quillabrae::model {

/// A record could not be written as JSON or read from it.
class JsonError : public std::runtime_error {
public:
    /// `message` begins with a capital and has no full stop. `path` is where in the document the
    /// fault lies, such as "layers[2].opacity"; empty for the document as a whole.
    JsonError(const QString& message, const QString& path);

    const QString& message() const { return m_message; }
    const QString& path() const { return m_path; }
    /// Message and path as one sentence for the user.
    QString description() const;

private:
    QString m_message;
    QString m_path;
};

} // namespace quillabrae::model
