// Linked into every program of a build with AddressSanitizer; ASAN_OPTIONS comes on top of it.
// What a refused allocation does is for the program to say, and where it gave up is told. Globals must not
// need each other. Leaks are looked for but in programs that draw: drivers of OpenGL keep memory to the end,
// in libraries that are unloaded before the check, so that no list of them could tell theirs from ours.
// Strings are looked at to their ends but in programs that draw: the toolkit's keyboard library rightly
// copies names of a given length out of messages in which nothing ends them.
extern "C" const char *__asan_default_options();
extern "C" const char *__ubsan_default_options();

extern "C" const char *__ubsan_default_options()
{
    return "print_stacktrace=1";
}

extern "C" const char *__asan_default_options()
{
    return "allocator_may_return_null=1:handle_abort=1:check_initialization_order=1:strict_init_order=1:"
           "detect_stack_use_after_return=1:"
#ifdef TEVORA_DRAWS
           "detect_leaks=0";
#else
           "detect_leaks=1:strict_string_checks=1";
#endif
}
