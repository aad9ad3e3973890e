// SPDX-License-Identifier: GPL-3.0-or-later
// The library that is preloaded to make system calls on files go wrong. It counts those that touch
// paths below one folder, from 1, and does nothing else unless it is told to. It is told by the
// environment:
//
// QUILLABRAE_FAULTS_BELOW  the folder, absolute
// QUILLABRAE_FAULTS_LOG    a file outside of it; each call adds a line "NUMBER CALL PATH"
// QUILLABRAE_FAULTS_PLAN   "WHAT@NUMBER", what the call of that number comes to:
//     an errno's name     it fails so, and nothing is done
//     "short"             it reads or writes half of what it was asked for
//     "full"              it and all later calls that need room fail with ENOSPC
//     "kill-before", "kill-after"   the process is killed instead of it, or when it is done
//
// A process counts from the first call of `quillabraeFaultsBegin` to that of `quillabraeFaultsEnd`.
// A program finds both with dlsym(3).
//
// It takes the place of the C library's functions, so it uses none of them that it replaces: what
// it does for itself are bare system calls.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

// The large-file names would be other functions, and the marked prototypes get in the way.
#undef open64
#undef openat64

namespace {

using Path = std::array<char, PATH_MAX>;

enum class Needs { nothing, room };
enum class What { run, fail, shorten, killAfter };

struct Verdict {
    What what = What::run;
    int error = 0;
};

struct Name {
    std::string_view text;
    int number;
};

constexpr std::array errnos{
    Name{"ENOSPC", ENOSPC}, Name{"EIO", EIO},     Name{"EACCES", EACCES},
    Name{"EINTR", EINTR},   Name{"EPERM", EPERM}, Name{"ENOENT", ENOENT},
};

struct Plan {
    std::string_view what;
    int number = 0;
};

/// Everything is as it is told when the process starts.
struct Settings {
    std::string_view below;
    int log = -1;
    Plan plan;
};

std::atomic<bool> isCounting{false};
std::atomic<int> count{0};

std::string_view variable(const char* name) {
    const char* text = std::getenv(name);
    return text == nullptr ? std::string_view() : std::string_view(text);
}

const Settings& settings() {
    static const Settings value = [] {
        Settings made;
        made.below = variable("QUILLABRAE_FAULTS_BELOW");
        if (const auto log = variable("QUILLABRAE_FAULTS_LOG"); !log.empty())
            made.log = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, log.data(),
                                                  O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
        const std::string_view plan = variable("QUILLABRAE_FAULTS_PLAN");
        if (const auto at = plan.find('@'); at != std::string_view::npos)
            made.plan = {plan.substr(0, at), std::atoi(plan.data() + at + 1)};
        return made;
    }();
    return value;
}

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

bool isBelow(std::string_view path) {
    const std::string_view folder = settings().below;
    return !folder.empty() && path.starts_with(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

/// Where a descriptor leads; empty where it is no file's.
std::string_view pathOf(int descriptor, Path& room) {
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const long size =
        ::syscall(SYS_readlinkat, AT_FDCWD, link.data(), room.data(), room.size() - 1);
    return {room.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

std::string_view pathOf(int folder, const char* name, Path& room) {
    if (name == nullptr) return {};
    if (*name == '/' || folder == AT_FDCWD) return name;
    const std::string_view start = pathOf(folder, room);
    const std::size_t rest = room.size() - start.size();
    std::snprintf(room.data() + start.size(), rest, "/%s", name);
    return room.data();
}

[[noreturn]] void die() {
    ::syscall(SYS_kill, ::getpid(), SIGKILL);
    for (;;) ::syscall(SYS_pause);
}

void note(int number, const char* call, std::string_view path) {
    if (settings().log < 0) return;
    std::array<char, PATH_MAX + 64> line{};
    const int size = std::snprintf(line.data(), line.size(), "%d %s %.*s\n", number, call,
                                   static_cast<int>(path.size()), path.data());
    ::syscall(SYS_write, settings().log, line.data(), size);
}

/// Counts a call, and what is to become of it.
Verdict verdict(const char* call, std::string_view path, Needs needs = Needs::nothing) {
    if (!isCounting || !isBelow(path)) return {};
    const int number = ++count;
    note(number, call, path);
    const Plan& plan = settings().plan;
    if (plan.what == "full" && number >= plan.number && needs == Needs::room)
        return {What::fail, ENOSPC};
    if (number != plan.number) return {};
    if (plan.what == "kill-before") die();
    if (plan.what == "kill-after") return {What::killAfter, 0};
    if (plan.what == "short") return {What::shorten, 0};
    for (const Name& name : errnos)
        if (name.text == plan.what) return {What::fail, name.number};
    return {};
}

/// Does what the verdict says around the real call.
template <typename Call>
auto follow(const Verdict& verdict, Call&& call) {
    if (verdict.what == What::fail) {
        errno = verdict.error;
        return static_cast<decltype(call())>(-1);
    }
    const auto result = call();
    if (verdict.what == What::killAfter) die();
    return result;
}

std::size_t asked(const Verdict& verdict, std::size_t size) {
    return verdict.what == What::shorten && size > 1 ? size / 2 : size;
}

bool creates(int flags) {
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

mode_t modeIn(int flags, va_list arguments) {
    return creates(flags) ? va_arg(arguments, mode_t) : 0;
}

int opened(int folder, const char* name, int flags, mode_t mode) {
    static const auto real = next<int (*)(int, const char*, int, ...)>("openat");
    Path room;
    const bool isNew = creates(flags);
    return follow(verdict(isNew ? "create" : "open", pathOf(folder, name, room),
                          isNew ? Needs::room : Needs::nothing),
                  [&] { return real(folder, name, flags, mode); });
}

/// A call on one path.
template <typename Call>
int onPath(const char* name, int folder, const char* path, Needs needs, Call&& call) {
    Path room;
    return follow(verdict(name, pathOf(folder, path, room), needs), call);
}

/// A call on two paths, either of which counts.
template <typename Call>
int onPaths(const char* name, std::string_view from, std::string_view to, Call&& call) {
    return follow(verdict(name, isBelow(to) ? to : from, Needs::room), call);
}

template <typename Call>
int onDescriptor(const char* name, int descriptor, Needs needs, Call&& call) {
    Path room;
    return follow(verdict(name, pathOf(descriptor, room), needs), call);
}

Verdict ofBytes(const char* name, int descriptor, Needs needs) {
    if (!isCounting) return {};
    Path room;
    return verdict(name, pathOf(descriptor, room), needs);
}

} // namespace

extern "C" {

void quillabraeFaultsBegin() {
    settings();
    isCounting = true;
}

void quillabraeFaultsEnd() {
    isCounting = false;
}

// NOLINTBEGIN(readability-identifier-naming): the names are the C library's.

#define OPEN(name)                                    \
    int name(const char* path, int flags, ...) {      \
        va_list arguments;                            \
        va_start(arguments, flags);                   \
        const mode_t mode = modeIn(flags, arguments); \
        va_end(arguments);                            \
        return opened(AT_FDCWD, path, flags, mode);   \
    }
#define OPENAT(name)                                         \
    int name(int folder, const char* path, int flags, ...) { \
        va_list arguments;                                   \
        va_start(arguments, flags);                          \
        const mode_t mode = modeIn(flags, arguments);        \
        va_end(arguments);                                   \
        return opened(folder, path, flags, mode);            \
    }
OPEN(open)
OPEN(open64)
OPENAT(openat)
OPENAT(openat64)
#undef OPEN
#undef OPENAT

int __open_2(const char* path, int flags) {
    return opened(AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
    return opened(AT_FDCWD, path, flags, 0);
}
int __openat_2(int folder, const char* path, int flags) {
    return opened(folder, path, flags, 0);
}
int __openat64_2(int folder, const char* path, int flags) {
    return opened(folder, path, flags, 0);
}
int creat(const char* path, mode_t mode) {
    return opened(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}
int creat64(const char* path, mode_t mode) {
    return opened(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}

DIR* opendir(const char* path) {
    static const auto real = next<DIR* (*)(const char*)>("opendir");
    const Verdict what = verdict("opendir", path);
    if (what.what == What::fail) {
        errno = what.error;
        return nullptr;
    }
    DIR* const result = real(path);
    if (what.what == What::killAfter) die();
    return result;
}

ssize_t write(int file, const void* bytes, std::size_t size) {
    const Verdict what = ofBytes("write", file, Needs::room);
    static const auto real = next<ssize_t (*)(int, const void*, std::size_t)>("write");
    return follow(what, [&] { return real(file, bytes, asked(what, size)); });
}

ssize_t read(int file, void* bytes, std::size_t size) {
    const Verdict what = ofBytes("read", file, Needs::nothing);
    static const auto real = next<ssize_t (*)(int, void*, std::size_t)>("read");
    return follow(what, [&] { return real(file, bytes, asked(what, size)); });
}

#define PWRITE(name)                                                                             \
    ssize_t name(int file, const void* bytes, std::size_t size, off_t at) {                      \
        const Verdict what = ofBytes("pwrite", file, Needs::room);                               \
        static const auto real = next<ssize_t (*)(int, const void*, std::size_t, off_t)>(#name); \
        return follow(what, [&] { return real(file, bytes, asked(what, size), at); });           \
    }
PWRITE(pwrite)
PWRITE(pwrite64)
#undef PWRITE

ssize_t writev(int file, const iovec* parts, int number) {
    const Verdict what = ofBytes("writev", file, Needs::room);
    static const auto real = next<ssize_t (*)(int, const iovec*, int)>("writev");
    return follow(what, [&] { return real(file, parts, number); });
}

#define ON_DESCRIPTOR(name, word, needs)                                    \
    int name(int file) {                                                    \
        static const auto real = next<int (*)(int)>(#name);                 \
        return onDescriptor(word, file, needs, [&] { return real(file); }); \
    }
ON_DESCRIPTOR(fsync, "fsync", Needs::room)
ON_DESCRIPTOR(fdatasync, "fdatasync", Needs::room)
#undef ON_DESCRIPTOR

int close(int file) {
    static const auto real = next<int (*)(int)>("close");
    if (!isCounting) return real(file);
    Path room;
    const Verdict what = verdict("close", pathOf(file, room));
    // Whatever it says, the descriptor is closed then.
    if (what.what == What::fail) real(file);
    return follow(what, [&] { return real(file); });
}

#define TRUNCATE(name)                                                                            \
    int name(int file, off_t size) {                                                              \
        static const auto real = next<int (*)(int, off_t)>(#name);                                \
        return onDescriptor("ftruncate", file, Needs::nothing, [&] { return real(file, size); }); \
    }
TRUNCATE(ftruncate)
TRUNCATE(ftruncate64)
#undef TRUNCATE

#define FALLOCATE(name)                                                        \
    int name(int file, int mode, off_t from, off_t size) {                     \
        static const auto real = next<int (*)(int, int, off_t, off_t)>(#name); \
        return onDescriptor("fallocate", file, Needs::room,                    \
                            [&] { return real(file, mode, from, size); });     \
    }
FALLOCATE(fallocate)
FALLOCATE(fallocate64)
#undef FALLOCATE

ssize_t copy_file_range(int from, off64_t* fromPlace, int to, off64_t* toPlace, std::size_t size,
                        unsigned flags) {
    const Verdict what = ofBytes("copy_file_range", to, Needs::room);
    static const auto real =
        next<ssize_t (*)(int, off64_t*, int, off64_t*, std::size_t, unsigned)>("copy_file_range");
    return follow(what,
                  [&] { return real(from, fromPlace, to, toPlace, asked(what, size), flags); });
}

#define SENDFILE(name)                                                                    \
    ssize_t name(int to, int from, off_t* place, std::size_t size) {                      \
        const Verdict what = ofBytes("sendfile", to, Needs::room);                        \
        static const auto real = next<ssize_t (*)(int, int, off_t*, std::size_t)>(#name); \
        return follow(what, [&] { return real(to, from, place, asked(what, size)); });    \
    }
SENDFILE(sendfile)
SENDFILE(sendfile64)
#undef SENDFILE

#define MMAP(name)                                                                                 \
    void* name(void* at, std::size_t size, int access, int flags, int file, off_t from) {          \
        static const auto real = next<void* (*)(void*, std::size_t, int, int, int, off_t)>(#name); \
        const Verdict what = file < 0 ? Verdict{} : ofBytes("mmap", file, Needs::nothing);         \
        if (what.what == What::fail) {                                                             \
            errno = what.error;                                                                    \
            return MAP_FAILED;                                                                     \
        }                                                                                          \
        void* const result = real(at, size, access, flags, file, from);                            \
        if (what.what == What::killAfter) die();                                                   \
        return result;                                                                             \
    }
MMAP(mmap)
MMAP(mmap64)
#undef MMAP

int rename(const char* from, const char* to) {
    static const auto real = next<int (*)(const char*, const char*)>("rename");
    return onPaths("rename", from, to, [&] { return real(from, to); });
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
    static const auto real = next<int (*)(int, const char*, int, const char*)>("renameat");
    Path fromRoom;
    Path toRoom;
    return onPaths("rename", pathOf(fromFolder, from, fromRoom), pathOf(toFolder, to, toRoom),
                   [&] { return real(fromFolder, from, toFolder, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    static const auto real =
        next<int (*)(int, const char*, int, const char*, unsigned)>("renameat2");
    Path fromRoom;
    Path toRoom;
    return onPaths(flags == 0 ? "rename" : "exchange", pathOf(fromFolder, from, fromRoom),
                   pathOf(toFolder, to, toRoom),
                   [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int link(const char* from, const char* to) {
    static const auto real = next<int (*)(const char*, const char*)>("link");
    return onPaths("link", from, to, [&] { return real(from, to); });
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    static const auto real = next<int (*)(int, const char*, int, const char*, int)>("linkat");
    Path fromRoom;
    Path toRoom;
    return onPaths("link", pathOf(fromFolder, from, fromRoom), pathOf(toFolder, to, toRoom),
                   [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int symlink(const char* content, const char* path) {
    static const auto real = next<int (*)(const char*, const char*)>("symlink");
    return onPath("symlink", AT_FDCWD, path, Needs::room, [&] { return real(content, path); });
}

int mkdir(const char* path, mode_t mode) {
    static const auto real = next<int (*)(const char*, mode_t)>("mkdir");
    return onPath("mkdir", AT_FDCWD, path, Needs::room, [&] { return real(path, mode); });
}

int mkdirat(int folder, const char* path, mode_t mode) {
    static const auto real = next<int (*)(int, const char*, mode_t)>("mkdirat");
    return onPath("mkdir", folder, path, Needs::room, [&] { return real(folder, path, mode); });
}

#define REMOVE(name)                                                                      \
    int name(const char* path) {                                                          \
        static const auto real = next<int (*)(const char*)>(#name);                       \
        return onPath(#name, AT_FDCWD, path, Needs::nothing, [&] { return real(path); }); \
    }
REMOVE(unlink)
REMOVE(rmdir)
REMOVE(remove)
#undef REMOVE

int unlinkat(int folder, const char* path, int flags) {
    static const auto real = next<int (*)(int, const char*, int)>("unlinkat");
    return onPath("unlink", folder, path, Needs::nothing,
                  [&] { return real(folder, path, flags); });
}

int chmod(const char* path, mode_t mode) {
    static const auto real = next<int (*)(const char*, mode_t)>("chmod");
    return onPath("chmod", AT_FDCWD, path, Needs::nothing, [&] { return real(path, mode); });
}

int fchmod(int file, mode_t mode) {
    static const auto real = next<int (*)(int, mode_t)>("fchmod");
    return onDescriptor("chmod", file, Needs::nothing, [&] { return real(file, mode); });
}

int fchmodat(int folder, const char* path, mode_t mode, int flags) {
    static const auto real = next<int (*)(int, const char*, mode_t, int)>("fchmodat");
    return onPath("chmod", folder, path, Needs::nothing,
                  [&] { return real(folder, path, mode, flags); });
}

// NOLINTEND(readability-identifier-naming)

} // extern "C"
