// SPDX-License-Identifier: GPL-3.0-or-later
// The library that is preloaded to make system calls on files go wrong, as the plan has it. It
// takes the place of the C library's functions, so it uses none of them that it replaces.
#include "faults/FaultPlan.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string_view>

// The large-file names would be other functions, and the marked prototypes get in the way.
#undef open64
#undef openat64

namespace {

using namespace quillabrae::tests::faults; // NOLINT(google-build-using-namespace)

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
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
    // One that is there keeps the mode it has.
    const bool isThere = (flags & O_TMPFILE) != O_TMPFILE && isUnderWay() &&
                         ::syscall(SYS_faccessat, folder, name, F_OK) == 0;
    return follow(verdict(isNew ? "create" : "open", pathOf(folder, name, room),
                          isNew ? Needs::room : Needs::nothing, isThere ? 0 : mode),
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
    if (!isUnderWay()) return {};
    Path room;
    return verdict(name, pathOf(descriptor, room), needs);
}

} // namespace

extern "C" {

void quillabraeFaultsBegin() {
    begin();
}

void quillabraeFaultsEnd() {
    end();
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
    const int parted = static_cast<int>(asked(what, static_cast<std::size_t>(number)));
    return follow(what, [&] { return real(file, parts, parted); });
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
    if (!isUnderWay()) return real(file);
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
    Path room;
    struct stat facts {};
    const bool isKnown = ::fstatat(fromFolder, from, &facts,
                                   flags & AT_SYMLINK_FOLLOW ? 0 : AT_SYMLINK_NOFOLLOW) == 0;
    return follow(verdict("link", pathOf(toFolder, to, room), Needs::room,
                          isKnown ? facts.st_mode & 07777 : 0),
                  [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int symlink(const char* content, const char* path) {
    static const auto real = next<int (*)(const char*, const char*)>("symlink");
    return onPath("symlink", AT_FDCWD, path, Needs::room, [&] { return real(content, path); });
}

int mkdir(const char* path, mode_t mode) {
    static const auto real = next<int (*)(const char*, mode_t)>("mkdir");
    return follow(verdict("mkdir", path, Needs::room, mode), [&] { return real(path, mode); });
}

int mkdirat(int folder, const char* path, mode_t mode) {
    static const auto real = next<int (*)(int, const char*, mode_t)>("mkdirat");
    Path room;
    return follow(verdict("mkdir", pathOf(folder, path, room), Needs::room, mode),
                  [&] { return real(folder, path, mode); });
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
