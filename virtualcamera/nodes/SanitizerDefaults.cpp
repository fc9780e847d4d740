/// GLib and umockdev are built without ThreadSanitizer. It cannot see their synchronization, so it
/// would report their memory and the memory of every thread to which they pass work.
// NOLINTBEGIN(bugprone-reserved-identifier): ThreadSanitizer looks for this name.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}
// NOLINTEND(bugprone-reserved-identifier)
