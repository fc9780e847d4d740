/// GLib and umockdev are built without ThreadSanitizer and synchronize in ways it cannot see, so
/// it would report their own memory and that of every thread they hand work to.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}
