// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PeakMemory.h"

#include <QByteArray>
#include <QFile>

#include <stdexcept>

namespace quillabrae::tests {
namespace {

// A line of the kernel's account of this process, in bytes.
qint64 statusOf(const QByteArray& name) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) throw std::runtime_error("no account of the process");
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ').front().toLongLong() * 1024;
    }
    throw std::runtime_error("no such line in the account of the process");
}

} // namespace

PeakMemory::PeakMemory() {
    // Writing 5 there sets the peak back to what is held now.
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
        throw std::runtime_error("the peak cannot be set back");
    reset.close();
    m_start = statusOf("VmRSS");
}

qint64 PeakMemory::growth() const {
    return statusOf("VmHWM") - m_start;
}

} // namespace quillabrae::tests
