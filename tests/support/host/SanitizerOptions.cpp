// Sanitizer options for the picture library, which is built without sanitizers.
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' own names.
extern "C" {
const char* __asan_default_options();
const char* __lsan_default_suppressions();
const char* __tsan_default_suppressions();

// Its frames have no frame pointers: a suppression finds them by their unwind tables alone.
const char* __asan_default_options() {
  return "fast_unwind_on_malloc=0";
}

// Its PNG reader jumps out of its own frames when a file ends early, and leaves its message behind.
const char* __lsan_default_suppressions() {
  return "leak:OpenImageIO";
}

// The sanitizer does not see the locks of its thread pool.
const char* __tsan_default_suppressions() {
  return "race:libOpenImageIO\ncalled_from_lib:libOpenImageIO.so\ncalled_from_lib:libOpenImageIO_Util.so";
}
}
// NOLINTEND(bugprone-reserved-identifier)
