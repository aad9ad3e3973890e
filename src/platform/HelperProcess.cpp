// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HelperProcess.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// This header forgets to say that it is C.
extern "C" {
#include <sys/pidfd.h>
}

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <optional>
#include <utility>
#include <vector>

namespace quillabrae::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr int inputInHelper = 3;
constexpr int outputInHelper = 4;
constexpr int progressInHelper = 5;
/// Above those, so that none is overwritten while they are laid out.
constexpr int firstOfOurs = 10;
constexpr auto lookEvery = 20ms;

int newMemoryFile() {
    const int made = ::memfd_create("quillabrae", MFD_CLOEXEC);
    if (made < 0 || made >= firstOfOurs) return made;
    const int moved = ::fcntl(made, F_DUPFD_CLOEXEC, firstOfOurs);
    ::close(made);
    return moved;
}

class FileActions {
public:
    FileActions() { ::posix_spawn_file_actions_init(&m_actions); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    posix_spawn_file_actions_t* get() { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

/// What a helper has open.
struct Files {
    int input;
    int output;
    int progress;
};

/// The new process, or -1.
pid_t start(const QString& program, const QStringList& arguments, const Files& files) {
    std::vector<QByteArray> words{QFile::encodeName(program)};
    for (const QString& argument : arguments) words.push_back(argument.toLocal8Bit());
    std::vector<char*> pointers;
    for (QByteArray& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    FileActions actions;
    ::posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(actions.get(), STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(actions.get(), files.input, inputInHelper);
    ::posix_spawn_file_actions_adddup2(actions.get(), files.output, outputInHelper);
    ::posix_spawn_file_actions_adddup2(actions.get(), files.progress, progressInHelper);
    ::posix_spawn_file_actions_addclosefrom_np(actions.get(), progressInHelper + 1);
    pid_t process = -1;
    const int error =
        ::posix_spawn(&process, pointers.front(), actions.get(), nullptr, pointers.data(), environ);
    return error == 0 ? process : -1;
}

/// How much a helper says to have done; nothing while it says nothing.
std::optional<double> fractionIn(int progress) {
    constexpr double whole = 100.0;
    struct stat facts {};
    if (::fstat(progress, &facts) != 0 || facts.st_size <= 0) return std::nullopt;
    return std::min(static_cast<double>(facts.st_size) / whole, 1.0);
}

/// A process of ours that has not been waited for.
class Helper {
public:
    explicit Helper(pid_t process) : m_process(process), m_descriptor(::pidfd_open(process, 0)) {}
    /// Kills what still runs.
    ~Helper() {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            status();
        }
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    bool hasEndedWithin(std::chrono::milliseconds time) const {
        pollfd waiting{m_descriptor, POLLIN, 0};
        return ::poll(&waiting, 1, static_cast<int>(time.count())) > 0;
    }
    /// Waits for the end.
    int status() {
        int status = -1;
        while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
        }
        m_process = -1;
        return status;
    }

private:
    pid_t m_process;
    int m_descriptor;
};

} // namespace

SharedMemory::SharedMemory() : m_descriptor(newMemoryFile()) {}

SharedMemory::~SharedMemory() {
    if (m_mapped != nullptr) ::munmap(m_mapped, m_size);
    if (m_descriptor >= 0) ::close(m_descriptor);
}

bool SharedMemory::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return m_descriptor >= 0;
}

std::span<const std::uint8_t> SharedMemory::bytes() {
    if (m_mapped == nullptr) {
        struct stat facts {};
        if (::fstat(m_descriptor, &facts) != 0 || facts.st_size <= 0) return {};
        m_size = static_cast<std::size_t>(facts.st_size);
        void* mapped = ::mmap(nullptr, m_size, PROT_READ, MAP_SHARED, m_descriptor, 0);
        if (mapped == MAP_FAILED) return {};
        m_mapped = mapped;
    }
    return {static_cast<const std::uint8_t*>(m_mapped), m_size};
}

QString helperProgram(const QString& name) {
    const QString folder = QCoreApplication::applicationDirPath();
    for (const QString& place : {QStringLiteral("/"), QStringLiteral("/" QUILLABRAE_HELPERS "/")}) {
        const QString path = folder + place + name;
        if (const QFileInfo program(path); program.isFile() && program.isExecutable()) return path;
    }
    return {};
}

HelperEnd runHelper(const QString& program, const QStringList& arguments, const SharedMemory& input,
                    const SharedMemory& output, std::chrono::milliseconds time,
                    const WorkControl& control, const std::function<void(double)>& tellProgress) {
    const SharedMemory progress;
    const Files files{input.descriptor(), output.descriptor(), progress.descriptor()};
    if (program.isEmpty() || files.input < 0 || files.output < 0 || files.progress < 0)
        return HelperEnd::couldNotStart;
    control.stopIfCancelled();
    const auto deadline = steady_clock::now() + time;
    const pid_t process = start(program, arguments, files);
    if (process < 0) return HelperEnd::couldNotStart;
    Helper helper(process);
    while (!helper.hasEndedWithin(lookEvery)) {
        control.stopIfCancelled();
        const auto fraction = fractionIn(files.progress);
        if (fraction && tellProgress) tellProgress(*fraction);
        if (steady_clock::now() >= deadline) return HelperEnd::ranOutOfTime;
    }
    control.stopIfCancelled();
    const int status = helper.status();
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? HelperEnd::succeeded : HelperEnd::failed;
}

} // namespace quillabrae::platform
