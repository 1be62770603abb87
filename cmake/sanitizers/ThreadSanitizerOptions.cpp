// Linked into every program of a build with ThreadSanitizer; TSAN_OPTIONS comes on top of it.
// The toolkit and the OpenGL driver are not instrumented: what they do among themselves is not looked at,
// what our code does in their threads and calls is.
extern "C" const char *__tsan_default_options();

extern "C" const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1:second_deadlock_stack=1:allocator_may_return_null=1";
}
