// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/MemoryGroup.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <unistd.h>

#include <array>
#include <chrono>

namespace quillabrae::tests {
namespace {

constexpr char variable[] = "QUILLABRAE_MEMORY_GROUP";

/// What the files of a group are called in a version of the kernel's interface.
struct Version {
    const char* root;
    const char* memory;
    /// Set to `swapLimit`, it leaves no room in swap.
    const char* swap;
    enum class SwapLimit { none, sameAsMemory } swapLimit;
    const char* peak;
};

constexpr std::array versions{
    Version{"/sys/fs/cgroup/memory", "memory.limit_in_bytes", "memory.memsw.limit_in_bytes",
            Version::SwapLimit::sameAsMemory, "memory.max_usage_in_bytes"},
    Version{"/sys/fs/cgroup", "memory.max", "memory.swap.max", Version::SwapLimit::none,
            "memory.peak"},
};

bool put(const QString& path, qint64 number) {
    // Opened as it is: these files cannot be made.
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::ExistingOnly | QIODevice::Unbuffered) &&
           file.write(QByteArray::number(number)) > 0;
}

bool hasSwap() {
    QFile swaps(QStringLiteral("/proc/swaps"));
    // The first line is a heading.
    return !swaps.open(QIODevice::ReadOnly) || swaps.readAll().trimmed().contains('\n');
}

QString in(const QString& folder, const char* file) {
    return folder + QLatin1Char('/') + QLatin1StringView(file);
}

} // namespace

MemoryGroup::MemoryGroup(qint64 bytes) : m_folder(qEnvironmentVariable(variable)) {
    if (!m_folder.isEmpty()) return;
    m_isOwn = true;
    for (const Version& version : versions) {
        m_folder =
            in(QLatin1StringView(version.root), "quillabrae-tests-") + QString::number(::getpid());
        if (!QFile::exists(in(QLatin1StringView(version.root), "cgroup.procs")) ||
            !QDir().mkdir(m_folder))
            continue;
        if (make(bytes)) {
            qputenv(variable, m_folder.toUtf8());
            return;
        }
        QDir().rmdir(m_folder);
    }
    m_folder.clear();
}

bool MemoryGroup::make(qint64 bytes) const {
    for (const Version& version : versions) {
        if (!put(in(m_folder, version.memory), bytes)) continue;
        const bool isSame = version.swapLimit == Version::SwapLimit::sameAsMemory;
        return put(in(m_folder, version.swap), isSame ? bytes : 0) || !hasSwap();
    }
    return false;
}

MemoryGroup::~MemoryGroup() {
    if (!m_isOwn || !isThere()) return;
    qunsetenv(variable);
    // One that was killed is in it until it is gone whole.
    const QDeadlineTimer deadline(std::chrono::seconds(5));
    while (!QDir().rmdir(m_folder) && !deadline.hasExpired()) QThread::msleep(1);
}

bool MemoryGroup::enter() const {
    // 0 is whoever writes it.
    return put(in(m_folder, "cgroup.procs"), 0);
}

qint64 MemoryGroup::peak() const {
    for (const Version& version : versions) {
        QFile file(in(m_folder, version.peak));
        if (file.open(QIODevice::ReadOnly)) return file.readAll().trimmed().toLongLong();
    }
    return 0;
}

} // namespace quillabrae::tests
