// ThreadSanitizer is told to pass over what the toolkit and the drivers do among themselves. It takes every
// call of the C library for one of theirs, so that ours are led here by the linker (--wrap, see
// Sanitizers.cmake): copies of memory, the end of objects, and locks, whose order is checked. Shared locks
// are left to the sanitizer: what they guard is seen, their order is not.
#include <sanitizer/tsan_interface.h>

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>

#include <cstddef>

extern "C" {

void __tsan_read_range(const void *begin, std::size_t size);
void __tsan_write_range(void *begin, std::size_t size);

void *__real_memcpy(void *to, const void *from, std::size_t size);
void *__wrap_memcpy(void *to, const void *from, std::size_t size);
void *__real_memmove(void *to, const void *from, std::size_t size);
void *__wrap_memmove(void *to, const void *from, std::size_t size);
void *__real_memset(void *to, int value, std::size_t size);
void *__wrap_memset(void *to, int value, std::size_t size);
int __real_memcmp(const void *one, const void *other, std::size_t size);
int __wrap_memcmp(const void *one, const void *other, std::size_t size);

void __real__ZdlPv(void *object); // operator delete
void __wrap__ZdlPv(void *object);
void __real__ZdlPvm(void *object, std::size_t size); // operator delete with a size
void __wrap__ZdlPvm(void *object, std::size_t size);
void __real__ZdaPv(void *objects); // operator delete[]
void __wrap__ZdaPv(void *objects);
void __real__ZdaPvm(void *objects, std::size_t size); // operator delete[] with a size
void __wrap__ZdaPvm(void *objects, std::size_t size);

int __wrap_pthread_mutex_lock(pthread_mutex_t *mutex);
int __wrap_pthread_mutex_trylock(pthread_mutex_t *mutex);
int __wrap_pthread_mutex_unlock(pthread_mutex_t *mutex);
}

void *__wrap_memcpy(void *to, const void *from, std::size_t size)
{
    __tsan_read_range(from, size);
    __tsan_write_range(to, size);
    return __real_memcpy(to, from, size);
}

void *__wrap_memmove(void *to, const void *from, std::size_t size)
{
    __tsan_read_range(from, size);
    __tsan_write_range(to, size);
    return __real_memmove(to, from, size);
}

void *__wrap_memset(void *to, int value, std::size_t size)
{
    __tsan_write_range(to, size);
    return __real_memset(to, value, size);
}

int __wrap_memcmp(const void *one, const void *other, std::size_t size)
{
    __tsan_read_range(one, size);
    __tsan_read_range(other, size);
    return __real_memcmp(one, other, size);
}

// Whoever ends an object writes all of it: another thread must not be at it.
void __wrap__ZdlPv(void *object)
{
    __tsan_write_range(object, malloc_usable_size(object));
    __real__ZdlPv(object);
}

void __wrap__ZdlPvm(void *object, std::size_t size)
{
    __tsan_write_range(object, malloc_usable_size(object));
    __real__ZdlPvm(object, size);
}

void __wrap__ZdaPv(void *objects)
{
    __tsan_write_range(objects, malloc_usable_size(objects));
    __real__ZdaPv(objects);
}

void __wrap__ZdaPvm(void *objects, std::size_t size)
{
    __tsan_write_range(objects, malloc_usable_size(objects));
    __real__ZdaPvm(objects, size);
}

namespace {

// The function of the C library itself, past the sanitizer's own, which would count each lock twice.
template <class Function>
Function *inCLibrary(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD), name));
}

} // namespace

int __wrap_pthread_mutex_lock(pthread_mutex_t *mutex)
{
    static auto *const lock = inCLibrary<int(pthread_mutex_t *)>("pthread_mutex_lock");
    __tsan_mutex_pre_lock(mutex, 0);
    const int failure = lock(mutex);
    __tsan_mutex_post_lock(mutex, failure != 0 ? __tsan_mutex_try_lock_failed : 0, 0);
    return failure;
}

int __wrap_pthread_mutex_trylock(pthread_mutex_t *mutex)
{
    static auto *const lock = inCLibrary<int(pthread_mutex_t *)>("pthread_mutex_trylock");
    __tsan_mutex_pre_lock(mutex, __tsan_mutex_try_lock);
    const int failure = lock(mutex);
    __tsan_mutex_post_lock(mutex, __tsan_mutex_try_lock | (failure != 0 ? __tsan_mutex_try_lock_failed : 0),
                           0);
    return failure;
}

int __wrap_pthread_mutex_unlock(pthread_mutex_t *mutex)
{
    static auto *const unlock = inCLibrary<int(pthread_mutex_t *)>("pthread_mutex_unlock");
    __tsan_mutex_pre_unlock(mutex, 0);
    const int failure = unlock(mutex);
    __tsan_mutex_post_unlock(mutex, 0);
    return failure;
}
