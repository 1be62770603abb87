// Linked into every program of a build with AddressSanitizer; ASAN_OPTIONS comes on top of it.
// What a refused allocation does is for the program to say, and where it gave up is told. Globals must not
// need each other. Leaks are looked for, and strings to their ends but in programs that draw: the toolkit's
// keyboard library rightly copies names of a given length out of messages in which nothing ends them.
extern "C" const char *__asan_default_options();
extern "C" const char *__ubsan_default_options();
extern "C" const char *__lsan_default_suppressions();
extern "C" int dlclose(void *handle) noexcept;

extern "C" const char *__ubsan_default_options()
{
    return "print_stacktrace=1";
}

extern "C" const char *__asan_default_options()
{
    return "allocator_may_return_null=1:handle_abort=1:check_initialization_order=1:strict_init_order=1:"
           "detect_stack_use_after_return=1:"
#ifndef TEVORA_DRAWS
           "strict_string_checks=1:"
#endif
           "detect_leaks=1";
}

#ifdef TEVORA_DRAWS
// Drivers of OpenGL keep memory to the end of the process, which the search for leaks finds in their globals:
// no library is unloaded before.
extern "C" int dlclose(void * /*handle*/) noexcept
{
    return 0;
}

// libdbus: the toolkit's connection to the desktop's settings, where there is no bus, loses a table of 1 kB
// once a process.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libdbus-1.so\n";
}
#endif
