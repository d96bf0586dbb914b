// Linked into tests under the address sanitizer. A stream of libcubeb whose sink is removed leaves an operation of
// libpulse behind, which nobody frees. The sanitizer needs whole stacks to tell this from leaks of our own. And where a
// thread starts while the program ends, the sanitizer reports what it has just allocated for that thread itself.
extern "C" {
const char* __asan_default_options();
const char* __lsan_default_suppressions();
}

const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }
const char* __lsan_default_suppressions() { return "leak:libcubeb.so\nleak:pthread_getattr_np\n"; }
