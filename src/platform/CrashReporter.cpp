// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CrashReporter.h"

#include <QDateTime>
#include <QFile>

#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <span>
#include <string_view>

namespace quillabrae::platform {
namespace {

struct FatalSignal {
    int number;
    std::string_view name;
};

constexpr std::array fatalSignals{
    FatalSignal{SIGSEGV, "SIGSEGV"}, FatalSignal{SIGBUS, "SIGBUS"},   FatalSignal{SIGILL, "SIGILL"},
    FatalSignal{SIGFPE, "SIGFPE"},   FatalSignal{SIGABRT, "SIGABRT"}, FatalSignal{SIGSYS, "SIGSYS"},
};

constexpr int mostFrames = 64;
constexpr std::size_t longestModuleName = 64;
/// A crash while another thread loads a library waits for that thread; longer than this it does
/// not.
constexpr unsigned longestReporting = 10;
/// Room for the handler and the unwinder beneath it.
constexpr std::size_t handlerStackSize = std::size_t{128} * 1024;

/// All that the handler needs, made beforehand: it may neither allocate nor lock.
struct Prepared {
    std::array<char, PATH_MAX> path{};
    std::array<char, 64> version{};
    std::array<char, handlerStackSize> stack{};
    pid_t mainThread = 0;
    std::atomic_flag isReporting = ATOMIC_FLAG_INIT;
};

Prepared& prepared() {
    static Prepared value;
    return value;
}

/// One line at a time, straight to the file.
class Line {
public:
    Line& operator<<(std::string_view text) {
        for (const char letter : text) put(letter);
        return *this;
    }
    Line& number(std::uintptr_t value, unsigned base) {
        std::array<char, 2 * sizeof value * CHAR_BIT> digits{};
        std::size_t count = 0;
        do {
            digits[count++] = "0123456789abcdef"[value % base];
            value /= base;
        } while (value != 0);
        while (count > 0) put(digits[--count]);
        return *this;
    }
    /// A byte as two hexadecimal digits.
    Line& byte(unsigned char value) {
        if (value < 16) put('0');
        return number(value, 16);
    }
    void writeTo(int file) {
        put('\n');
        const char* rest = m_text.data();
        while (m_size > 0) {
            const ssize_t written = ::write(file, rest, m_size);
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0) break;
            rest += written;
            m_size -= static_cast<std::size_t>(written);
        }
        m_size = 0;
    }

private:
    void put(char letter) {
        if (m_size < m_text.size()) m_text[m_size++] = letter;
    }

    std::array<char, 256> m_text{};
    std::size_t m_size = 0;
};

/// The file name's end of a path, without what is not plain text.
std::string_view plainName(const char* path) {
    std::string_view name(path);
    if (const auto slash = name.rfind('/'); slash != std::string_view::npos)
        name.remove_prefix(slash + 1);
    const auto isPlain = [](char letter) { return letter > ' ' && letter < '\x7f'; };
    if (!std::ranges::all_of(name, isPlain)) return "library";
    return name.substr(0, longestModuleName);
}

/// The part of the program that an address lies in.
struct Place {
    std::uintptr_t address = 0;
    std::string_view module;
    std::uintptr_t offset = 0;
};

bool isIn(const dl_phdr_info& module, std::uintptr_t address) {
    const std::span segments(module.dlpi_phdr, module.dlpi_phnum);
    return std::ranges::any_of(segments, [&](const ElfW(Phdr) & segment) {
        const std::uintptr_t start = module.dlpi_addr + segment.p_vaddr;
        return segment.p_type == PT_LOAD && address >= start && address - start < segment.p_memsz;
    });
}

int lookForPlace(dl_phdr_info* module, std::size_t /*size*/, void* data) {
    auto& place = *static_cast<Place*>(data);
    if (!isIn(*module, place.address)) return 0;
    const char* path = module->dlpi_name;
    place.module = path == nullptr || *path == '\0' ? "quillabrae" : plainName(path);
    place.offset = place.address - module->dlpi_addr;
    return 1;
}

constexpr std::size_t padded(std::size_t size) {
    return (size + 3) / 4 * 4;
}

/// The linker's name for this very build among the notes of a segment; empty where it is not.
std::span<const unsigned char> buildIn(std::span<const unsigned char> notes) {
    constexpr std::size_t longestId = 32;
    ElfW(Nhdr) note{};
    while (notes.size() >= sizeof note) {
        std::memcpy(&note, notes.data(), sizeof note);
        const std::size_t start = sizeof note + padded(note.n_namesz);
        const std::size_t end = start + padded(note.n_descsz);
        if (end > notes.size()) break;
        if (note.n_type == NT_GNU_BUILD_ID)
            return notes.subspan(start, std::min<std::size_t>(note.n_descsz, longestId));
        notes = notes.subspan(end);
    }
    return {};
}

/// Of the first module, which is the program.
int writeBuild(dl_phdr_info* module, std::size_t /*size*/, void* data) {
    for (const auto& segment : std::span(module->dlpi_phdr, module->dlpi_phnum)) {
        if (segment.p_type != PT_NOTE) continue;
        const auto* start =
            reinterpret_cast<const unsigned char*>(module->dlpi_addr + segment.p_vaddr);
        const auto id = buildIn(std::span(start, segment.p_memsz));
        if (id.empty()) continue;
        Line line;
        line << "build: ";
        for (const unsigned char byte : id) line.byte(byte);
        line.writeTo(*static_cast<const int*>(data));
        break;
    }
    return 1;
}

void writeStack(int file) {
    std::array<void*, mostFrames> frames{};
    const int count = ::backtrace(frames.data(), mostFrames);
    for (int i = 0; i < count; ++i) {
        Place place{reinterpret_cast<std::uintptr_t>(frames[static_cast<std::size_t>(i)]),
                    "unknown"};
        ::dl_iterate_phdr(lookForPlace, &place);
        Line line;
        line.number(static_cast<std::uintptr_t>(i), 10) << " " << place.module << " +0x";
        line.number(place.offset, 16).writeTo(file);
    }
}

/// Makes the folders on the way to the report; those that are there already stay as they are.
void makeFolders(std::array<char, PATH_MAX>& path) {
    for (std::size_t i = 1; path[i] != '\0'; ++i) {
        if (path[i] != '/') continue;
        path[i] = '\0';
        ::mkdir(path.data(), S_IRWXU);
        path[i] = '/';
    }
}

void writeReport(int number) {
    Prepared& ready = prepared();
    makeFolders(ready.path);
    const int file = ::open(ready.path.data(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                            S_IRUSR | S_IWUSR);
    if (file < 0) return;
    Line line;
    // Line by line, so that what is known is there even when the unwinder fails.
    const std::string_view title(crashReportTitle);
    (line << title.substr(0, title.size() - 1)).writeTo(file);
    (line << "version: " << ready.version.data()).writeTo(file);
    const auto* known = std::ranges::find(fatalSignals, number, &FatalSignal::number);
    (line << "signal: " << (known != fatalSignals.end() ? known->name : "unknown")).writeTo(file);
    const bool isMain = ::syscall(SYS_gettid) == ready.mainThread;
    (line << "thread: " << (isMain ? "main" : "another")).writeTo(file);
    int descriptor = file;
    ::dl_iterate_phdr(writeBuild, &descriptor);
    writeStack(file);
    ::close(file);
}

void handle(int number, siginfo_t* information, void* /*context*/) {
    if (prepared().isReporting.test_and_set()) {
        // Another thread reports, and ends the program when it is done.
        for (;;) ::pause();
    }
    ::signal(SIGALRM, SIG_DFL);
    ::alarm(longestReporting);
    writeReport(number);
    ::alarm(0);
    ::signal(number, SIG_DFL);
    // A fault repeats itself when this returns. What somebody sent has to be sent once more; it
    // waits until then.
    if (information->si_code <= 0) ::syscall(SYS_tgkill, ::getpid(), ::syscall(SYS_gettid), number);
}

bool isHandledAlready() {
    return std::ranges::any_of(fatalSignals, [](const FatalSignal& fatal) {
        struct sigaction current {};
        return ::sigaction(fatal.number, nullptr, &current) == 0 &&
               ((current.sa_flags & SA_SIGINFO) != 0 || current.sa_handler != SIG_DFL);
    });
}

bool prepare(const QString& folder, const QByteArray& version) {
    Prepared& ready = prepared();
    const QString when =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QByteArray path =
        QFile::encodeName(QStringLiteral("%1/crash-%2-%3.txt").arg(folder, when).arg(::getpid()));
    if (path.size() >= PATH_MAX || !folder.startsWith(u'/')) return false;
    std::ranges::copy(path, ready.path.begin());
    std::ranges::copy(version.first(std::min<qsizetype>(version.size(), 63)),
                      ready.version.begin());
    ready.mainThread = static_cast<pid_t>(::syscall(SYS_gettid));
    // Its first call loads a library, which a handler may not do.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
    return true;
}

} // namespace

void reportCrashesTo(const QString& folder, const QByteArray& version) {
    if (isHandledAlready() || !prepare(folder, version)) return;
    stack_t stack{};
    stack.ss_sp = prepared().stack.data();
    stack.ss_size = prepared().stack.size();
    ::sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_sigaction = handle;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    // A fault within the handler ends the program at once.
    for (const FatalSignal& fatal : fatalSignals) ::sigaddset(&action.sa_mask, fatal.number);
    for (const FatalSignal& fatal : fatalSignals) ::sigaction(fatal.number, &action, nullptr);
}

} // namespace quillabrae::platform
