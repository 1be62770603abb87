// The toolkit starts other programs by a child that shares this program's memory until it runs the other one.
// ThreadSanitizer takes every child for one with a memory of its own: what it prepares in the child, to look
// at nothing any more, would befall the parent's thread. So children are given a memory of their own.
#include <dlfcn.h>
#include <sched.h>
#include <sys/types.h>

#include <cstdarg>

using Clone = int(int (*function)(void *), void *stack, int flags, void *argument, ...);

extern "C" int clone(int (*function)(void *), void *stack, int flags, void *argument, ...) noexcept
{
    va_list more;
    va_start(more, argument);
    auto *const parentId = va_arg(more, pid_t *);
    void *const threadStorage = va_arg(more, void *);
    auto *const childId = va_arg(more, pid_t *);
    va_end(more);
    static auto *const next = reinterpret_cast<Clone *>(dlsym(RTLD_NEXT, "clone"));
    return next(function, stack, flags & ~(CLONE_VM | CLONE_VFORK), argument, parentId, threadStorage,
                childId);
}
