// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <span>
#include <stdexcept>

namespace quillabrae::platform {

/// A step on the file system failed. `description` is the system's reason, as in "No space left on
/// device".
class FileOperationError : public std::runtime_error {
public:
    FileOperationError(const QString& path, int errorNumber);

    const QString& path() const { return m_path; }
    int errorNumber() const { return m_errorNumber; }
    QString description() const;

private:
    QString m_path;
    int m_errorNumber;
};

/// A new file on its way to the disk.
class DurableFile {
public:
    /// Closes; a file that was not finished may lack its end.
    virtual ~DurableFile() = default;
    /// Appends. Throws FileOperationError.
    virtual void write(std::span<const char> bytes) = 0;
    /// Brings everything to the disk and closes. Throws FileOperationError.
    virtual void finish() = 0;
};

/// The steps that durable saving is made of. Each throws FileOperationError when it fails, except
/// where it says otherwise. Paths are absolute.
class FileOperations {
public:
    virtual ~FileOperations() = default;

    /// Makes a folder and those above it that are missing; none of it is an error when it is there.
    virtual void makePath(const QString& folder) = 0;
    /// A new empty file at a path where there is none.
    virtual std::unique_ptr<DurableFile> createFile(const QString& path) = 0;
    /// Brings a folder's entries to the disk. Not an error where the file system has no such step.
    virtual void syncFolder(const QString& folder) = 0;

    /// Swaps two existing things at once: no observer sees either name missing. False where the
    /// file system cannot.
    virtual bool exchange(const QString& a, const QString& b) = 0;
    /// Moves within one file system; a file replaces a file at once.
    virtual void rename(const QString& from, const QString& to) = 0;
    /// Removes a file, or a folder with what it holds; not an error when there is nothing. Links
    /// are removed, not followed.
    virtual void removeTree(const QString& path) = 0;

    /// Gives `to` the access rights of `from` where both are files or both are folders. Never
    /// fails.
    virtual void adoptPermissions(const QString& from, const QString& to) = 0;

    /// Whether there is anything, a broken link included.
    virtual bool exists(const QString& path) = 0;
    /// Whether this user may change what is at `path`.
    virtual bool isWritable(const QString& path) = 0;
    /// The names in a folder, hidden ones included; empty for a folder that cannot be read.
    virtual QStringList entries(const QString& folder) = 0;
};

/// The operations of the machine's own file system.
FileOperations& systemFileOperations();

} // namespace quillabrae::platform
