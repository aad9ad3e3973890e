// SPDX-License-Identifier: GPL-3.0-or-later
// For ThreadSanitizer alone. Qt starts programs in a child that shares the parent's memory until it
// runs them. What the sanitizer notes for the child it then notes for the parent's thread, which it
// believes to take no locks from there on. A copy of the memory, as a fork makes it, does the same
// without that.
#include <dlfcn.h>
#include <sched.h>

#include <cstdarg>

extern "C" int clone(int (*run)(void*), void* stack, int flags, void* argument, ...) noexcept {
    using Clone = int (*)(int (*)(void*), void*, int, void*, int*, void*, int*);
    static const auto next = reinterpret_cast<Clone>(::dlsym(RTLD_NEXT, "clone"));
    std::va_list more;
    va_start(more, argument);
    int* const parent = va_arg(more, int*);
    void* const storage = va_arg(more, void*);
    int* const child = va_arg(more, int*);
    va_end(more);
    const bool isProcess = (flags & CLONE_THREAD) == 0;
    return next(run, stack, isProcess ? flags & ~CLONE_VM : flags, argument, parent, storage,
                child);
}
